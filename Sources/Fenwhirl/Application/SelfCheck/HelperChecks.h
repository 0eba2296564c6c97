// The installed helper: its file, its version, and one fan driven and handed back by it, each read back from
// the controller.
//
// The fan test leaves the machine as it was. It takes one fan that is automatic, only ever asks for more
// speed than the fan has, stays under the safety rules of the program, and is left out while another instance
// runs. Whoever can act after this process (`announce`) knows of the fan before it is driven, until it is
// automatic again.
//
// Threads: main thread; every check blocks it. The checks refer to this object.

#pragma once

#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"
#include "Fenwhirl/HelperClient/HandBackRule.h"
#include "Fenwhirl/Platform/Toolkit/FileStatus.h"
#include "FenwhirlCore/SMC.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Fenwhirl {

class HelperChecks {
public:
    struct Services {
        std::string path; // where the helper is installed
        std::function<std::optional<FileStatus>()> status;
        std::function<std::optional<std::string>()> version; // of a helper that is installed
        std::function<bool(const std::vector<std::string>&)> run;
        std::function<std::unique_ptr<SMC>()> openSMC;
        // Keeps other instances of the program from starting as long as the result lives; null when one runs.
        std::function<std::shared_ptr<void>()> becomeOnlyInstance;
        // What has to be handed back should this process end now; called before a fan is driven.
        std::function<void(const HandBack&)> announce;
        std::function<void()> keepAlive; // this process is still at work
        std::function<void()> finish;    // everything has been handed back
        std::function<void(std::chrono::milliseconds)> wait;
    };

    explicit HelperChecks(Services services);

    [[nodiscard]] std::vector<SelfCheck> checks();

private:
    [[nodiscard]] CheckResult present() const;
    [[nodiscard]] CheckResult owner() const;
    [[nodiscard]] CheckResult mode() const;
    [[nodiscard]] CheckResult version();
    // Drives the fan and hands it back before anything is printed, so that a slow reader of the table cannot
    // keep the fan manual; the later checks only report what was found.
    [[nodiscard]] CheckResult set();
    [[nodiscard]] CheckResult handedBack() const;
    [[nodiscard]] CheckResult asBefore() const;

    // Nothing when the fan test was made, else why not.
    [[nodiscard]] std::optional<QString> driveOneFan();
    void drive(SMC& smc, const FanReading& fan, std::int64_t rpm);
    [[nodiscard]] bool becomesTrue(const std::function<bool()>& question) const;

    struct Drive {
        std::optional<QString> leftOut; // why
        std::map<int, bool> modesBefore = {};
        std::map<int, bool> modesAfter = {};
        CheckResult set = CheckResult::skip({});
        CheckResult handedBack = CheckResult::skip({});
    };

    Services services_;
    std::optional<FileStatus> status_;
    bool isUsable_ = false; // of the right kind and version
    Drive drive_;
};

} // namespace Fenwhirl
