#include "Fenwhirl/Platform/Desktop/SingleInstanceLinux.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr int raiseTimeoutMilliseconds = 3000;
// The time within which the bus certainly notices that a program has died, and releases its name.
constexpr auto deadOwnerGracePeriod = std::chrono::milliseconds(500);

QString serviceName() {
    return QStringLiteral("com.fenwhirl.app");
}

QString objectPath() {
    return QStringLiteral("/com/fenwhirl/app");
}

// The file name of a process's executable, even if that was replaced while running; empty if it cannot be
// determined.
std::string programName(const std::string& process) {
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/" + process + "/exe", failure);
    std::string name = program.filename().string();
    constexpr std::string_view replaced = " (deleted)";
    if (name.ends_with(replaced)) {
        name.resize(name.size() - replaced.size());
    }
    return name;
}

} // namespace

QString privateRuntimeFolder() {
    QString session = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    if (!session.isEmpty() && belongsToUserAlone(session)) {
        return session;
    }
    return privateFolder(QStringLiteral("/tmp/fenwhirl-") + QString::number(geteuid()));
}

std::unique_ptr<SingleInstance> SingleInstance::create() {
    return std::make_unique<SingleInstanceLinux>(privateRuntimeFolder(), QDBusConnection::sessionBus());
}

SingleInstanceLinux::SingleInstanceLinux(const QString& folder, QDBusConnection bus)
    : lock_(folder)
    , bus_(std::move(bus)) {
    connect(&lock_, &InstanceLock::called, this, [this] { Q_EMIT raiseRequested({}); });
    connect(&lock_, &InstanceLock::told, this, &SingleInstance::actionRequested);
}

SingleInstanceLinux::~SingleInstanceLinux() {
    leaveBus();
}

bool SingleInstanceLinux::becomeFirst() {
    if (!lock_.take()) {
        return false;
    }
    if (!joinBus()) {
        lock_.release();
        return false;
    }
    lock_.listen();
    return true;
}

// The instance that owns the name on the session bus is the program for that session. It may run with another
// folder, in which case our lock does not see it, and two instances would drive the same fans. We wait only
// for a name whose owner may have just died. A different program with that name, or a bus that does not
// answer, is ignored: neither may keep the fans unwatched, and the pipe works without the bus.
bool SingleInstanceLinux::joinBus() {
    if (!bus_.isConnected()) {
        return true;
    }
    // Registered before the name, so that whoever finds the name also finds the object. If the registration
    // is refused, callers get an error and use the pipe.
    hasObject_ = bus_.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    const QDeadlineTimer deadline(deadOwnerGracePeriod);
    for (;;) {
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
            bus_.interface()->registerService(serviceName());
        hasName_ = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
        if (hasName_ || !reply.isValid()) {
            return true;
        }
        if (deadline.hasExpired()) {
            if (!isNameOurs()) {
                return true;
            }
            leaveBus();
            return false;
        }
        QThread::msleep(20);
    }
}

bool SingleInstanceLinux::isNameOurs() const {
    const QDBusReply<uint> user = bus_.interface()->serviceUid(serviceName());
    const QDBusReply<uint> process = bus_.interface()->servicePid(serviceName());
    if (!user.isValid() || user.value() != geteuid() || !process.isValid()) {
        return false;
    }
    const std::string program = programName(std::to_string(process.value()));
    return !program.empty() && program == programName("self");
}

void SingleInstanceLinux::removeObject() {
    if (std::exchange(hasObject_, false)) {
        bus_.unregisterObject(objectPath());
    }
}

// The name stays until the end, like the lock: an instance with another folder must wait, too. Without the
// object its calls are refused at once, even while this thread is busy handing the fans back.
void SingleInstanceLinux::stopListening() {
    lock_.stopListening();
    removeObject();
}

void SingleInstanceLinux::leaveBus() {
    removeObject();
    if (std::exchange(hasName_, false) && bus_.isConnected()) {
        bus_.unregisterService(serviceName());
    }
}

bool SingleInstanceLinux::raiseFirst() {
    QVariantMap platformData;
    const QString token =
        qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    if (!token.isEmpty()) {
        platformData.insert(QStringLiteral("activation-token"), token);
    }
    return callFirst(QStringLiteral("Activate"), {platformData}) || lock_.notifyHolder();
}

bool SingleInstanceLinux::notifyFirst(const QString& action) {
    return callFirst(QStringLiteral("ActivateAction"), {action, QVariantList(), QVariantMap()}) ||
           lock_.notifyHolder(action.toUtf8());
}

bool SingleInstanceLinux::callFirst(const QString& method, const QVariantList& arguments) const {
    if (!bus_.isConnected() || !isNameOurs()) {
        return false;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName(), objectPath(),
                                                       QStringLiteral("org.freedesktop.Application"), method);
    call.setArguments(arguments);
    return bus_.call(call, QDBus::Block, raiseTimeoutMilliseconds).type() == QDBusMessage::ReplyMessage;
}

void SingleInstanceLinux::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                         const QVariantMap& /*platformData*/) {
    Q_EMIT actionRequested(action);
}

void SingleInstanceLinux::Open(const QStringList& /*addresses*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstanceLinux::Activate(const QVariantMap& platformData) {
    Q_EMIT raiseRequested(platformData.value(QStringLiteral("activation-token")).toString());
}

} // namespace Fenwhirl
