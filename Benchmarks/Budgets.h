// What may not become more expensive: each benchmark program records its ratios here, and ends with one sentence
// for each that exceeds its budget. Main thread.

#pragma once

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace Fenwhirl {

class Budgets {
public:
    // `ratio` is the subject's cost divided by that of what it is compared with. Of several checks of the same
    // subject the last one counts.
    void check(const std::string& subject, double ratio, double allowed) {
        checks_[subject] = {ratio, allowed};
    }

    // Prints a sentence for each budget that was exceeded. Returns the program's exit status.
    [[nodiscard]] int finish() const {
        int status = EXIT_SUCCESS;
        for (const auto& [subject, check] : checks_) {
            if (!(check.ratio <= check.allowed)) {
                (void)std::printf("Too costly: %s, %.2f times what it is compared with (at most %.2f).\n",
                                  subject.c_str(), check.ratio, check.allowed);
                status = EXIT_FAILURE;
            }
        }
        return status;
    }

private:
    struct Check {
        double ratio;
        double allowed;
    };

    std::map<std::string, Check> checks_;
};

inline Budgets budgets;

} // namespace Fenwhirl
