// What grows with a number of things: each point is the cost for one number of them, and that of the least program
// that does the same work. graphs.py draws them. Main thread.

#pragma once

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace Fenwhirl {

class Curves {
public:
    // Costs in milliseconds. Of several points for the same number of the same things the last one counts.
    void point(const std::string& things, int number, double cost, double bare) {
        points_[things][number] = {cost, bare};
    }

    // Appends the points to the file that the environment names, one per line, separated by tabs: things, number,
    // cost, bare cost. Does nothing where it names none. Returns false when the file cannot be written.
    [[nodiscard]] bool save() const {
        const char* path = std::getenv("FENWHIRL_CURVES");
        if (path == nullptr) {
            return true;
        }
        std::FILE* file = std::fopen(path, "a");
        if (file == nullptr) {
            std::perror(path);
            return false;
        }
        for (const auto& [things, points] : points_) {
            for (const auto& [number, point] : points) {
                (void)std::fprintf(file, "%s\t%d\t%.6f\t%.6f\n", things.c_str(), number, point.cost,
                                   point.bare);
            }
        }
        return std::fclose(file) == 0;
    }

private:
    struct Point {
        double cost;
        double bare;
    };

    std::map<std::string, std::map<int, Point>> points_;
};

inline Curves curves;

} // namespace Fenwhirl
