#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"

namespace {

// The system starts a bundle once and reports a second start, and a click on the Dock icon, as "reopen".
class SingleInstanceMacOS final : public SingleInstance {
public:
    SingleInstanceMacOS() {
        ApplicationEvents::setReopenHandler([this] { Q_EMIT raiseRequested({}); });
    }

    ~SingleInstanceMacOS() override { ApplicationEvents::setReopenHandler({}); }

    SingleInstanceMacOS(const SingleInstanceMacOS&) = delete;
    SingleInstanceMacOS& operator=(const SingleInstanceMacOS&) = delete;

    bool becomeFirst() override { return true; }

    void raiseFirst() override {}
};

} // namespace

std::unique_ptr<SingleInstance> SingleInstance::create() {
    return std::make_unique<SingleInstanceMacOS>();
}
