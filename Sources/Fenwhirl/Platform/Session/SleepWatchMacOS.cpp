#include "Fenwhirl/Platform/Session/SleepWatch.h"

namespace Fenwhirl {

namespace {

class SleepWatchMacOS final : public SleepWatch {
public:
    void ready() override {}
};

} // namespace

std::unique_ptr<SleepWatch> SleepWatch::create() {
    return std::make_unique<SleepWatchMacOS>();
}

} // namespace Fenwhirl
