#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/InstanceLock.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"

#include <QDir>

namespace Fenwhirl {

namespace {

class SingleInstanceMacOS final : public SingleInstance {
public:
    SingleInstanceMacOS()
        // Not a folder for temporary or cached files: these are cleaned up while the program runs, and a lock
        // on a deleted file keeps nobody out.
        : lock_(privateFolder(QDir::homePath() +
                              QStringLiteral("/Library/Application Support/com.fenwhirl.app"))) {
        connect(&lock_, &InstanceLock::called, this, [this] { Q_EMIT raiseRequested({}); });
        connect(&lock_, &InstanceLock::told, this, &SingleInstance::actionRequested);
        ApplicationEvents::setReopenHandler([this] { Q_EMIT raiseRequested({}); });
    }

    ~SingleInstanceMacOS() override { ApplicationEvents::setReopenHandler({}); }

    SingleInstanceMacOS(const SingleInstanceMacOS&) = delete;
    SingleInstanceMacOS& operator=(const SingleInstanceMacOS&) = delete;

    bool becomeFirst() override {
        if (!lock_.take()) {
            return false;
        }
        lock_.listen();
        return true;
    }

    [[nodiscard]] bool raiseFirst() override { return lock_.notifyHolder(); }

    bool notifyFirst(const QString& action) override { return lock_.notifyHolder(action.toUtf8()); }

    void stopListening() override { lock_.stopListening(); }

private:
    InstanceLock lock_;
};

} // namespace

std::unique_ptr<SingleInstance> SingleInstance::create() {
    return std::make_unique<SingleInstanceMacOS>();
}

} // namespace Fenwhirl
