// Whether the System Management Controller answers, and how fast: every command of its protocol by itself,
// then what the program makes of them.
//
// Nothing is changed. That a write is refused is tried with the bytes that are there already, and not at all
// by root, whose write would be accepted.
//
// Threads: main thread; every check blocks it for the controller's answers. The checks refer to this object.

#pragma once

#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"
#include "FenwhirlCore/SMC.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Fenwhirl {

class ControllerChecks {
public:
    using Open = std::function<std::unique_ptr<SMCTransport>()>;

    explicit ControllerChecks(Open open, bool isRoot);

    [[nodiscard]] std::vector<SelfCheck> checks();

private:
    [[nodiscard]] CheckResult opened();
    [[nodiscard]] CheckResult timed(const SMCParam& request);
    [[nodiscard]] CheckResult refusedWrite();
    [[nodiscard]] CheckResult keys();
    [[nodiscard]] CheckResult temperatures();
    [[nodiscard]] CheckResult fans();

    // The check of an open connection.
    [[nodiscard]] SelfCheck connected(const QString& name, std::function<CheckResult()> run) const;

    Open open_;
    bool isRoot_;
    std::unique_ptr<SMCTransport> transport_; // for single commands
    std::unique_ptr<SMC> smc_;                // a connection of its own
    std::vector<std::string> temperatureKeys_;
};

// The number of fans, where the controller tells one that can be used.
[[nodiscard]] std::optional<int> usableFanCount(SMC& smc);

} // namespace Fenwhirl
