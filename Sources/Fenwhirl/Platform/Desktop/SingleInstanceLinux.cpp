#include "Fenwhirl/Platform/Desktop/SingleInstanceLinux.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QFile>
#include <QSocketNotifier>
#include <QThread>

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int raiseTimeoutMilliseconds = 3000;
// In which the bus has surely noticed that a program has died, and given up its name.
constexpr auto nameOfTheDeadLastsAtMost = std::chrono::milliseconds(500);

QString serviceName() {
    return QStringLiteral("com.fenwhirl.app");
}

QString objectPath() {
    return QStringLiteral("/com/fenwhirl/app");
}

bool belongsToUserAlone(const QByteArray& path) {
    struct stat status = {};
    return lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

} // namespace

QString privateRuntimeFolder() {
    const QByteArray session = qgetenv("XDG_RUNTIME_DIR");
    if (!session.isEmpty() && belongsToUserAlone(session))
        return QFile::decodeName(session);
    const QByteArray own = "/tmp/fenwhirl-" + QByteArray::number(geteuid());
    mkdir(own.constData(), S_IRWXU);
    return belongsToUserAlone(own) ? QFile::decodeName(own) : QString();
}

std::unique_ptr<SingleInstance> SingleInstance::create() {
    return std::make_unique<SingleInstanceLinux>(privateRuntimeFolder(), QDBusConnection::sessionBus());
}

SingleInstanceLinux::SingleInstanceLinux(QString folder, QDBusConnection bus)
    : folder_(std::move(folder))
    , bus_(std::move(bus)) {}

SingleInstanceLinux::~SingleInstanceLinux() {
    leaveBus();
    if (pipe_ >= 0)
        close(pipe_);
    if (lockFile_ >= 0)
        close(lockFile_);
}

bool SingleInstanceLinux::becomeFirst() {
    if (!lock())
        return false;
    if (!joinBus()) {
        if (lockFile_ >= 0)
            close(std::exchange(lockFile_, -1));
        return false;
    }
    if (lockFile_ >= 0)
        openPipe();
    return true;
}

bool SingleInstanceLinux::lock() {
    if (folder_.isEmpty())
        return true;
    const QByteArray path = QFile::encodeName(folder_ + QStringLiteral("/fenwhirl.lock"));
    lockFile_ = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (lockFile_ < 0)
        return true;
    if (flock(lockFile_, LOCK_EX | LOCK_NB) == 0)
        return true;
    close(std::exchange(lockFile_, -1));
    return false;
}

// Whoever has the name on the session's bus is the program for that session: it may run with another folder,
// where its lock says nothing to us, and two of them would drive the same fans. Only a name that its owner
// has just left behind by dying is waited for. A bus that does not answer decides nothing; the pipe is there
// without it.
bool SingleInstanceLinux::joinBus() {
    if (!bus_.isConnected())
        return true;
    // Before the name, so that nobody who finds the name finds nothing behind it. Should it be refused, who
    // calls gets an error and turns to the pipe.
    hasObject_ = bus_.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    const QDeadlineTimer deadline(nameOfTheDeadLastsAtMost);
    for (;;) {
        const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
            bus_.interface()->registerService(serviceName());
        hasName_ = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
        if (hasName_ || !reply.isValid())
            return true;
        if (deadline.hasExpired()) {
            leaveBus();
            return false;
        }
        QThread::msleep(20);
    }
}

void SingleInstanceLinux::leaveBus() {
    if (std::exchange(hasObject_, false))
        bus_.unregisterObject(objectPath());
    if (std::exchange(hasName_, false) && bus_.isConnected())
        bus_.unregisterService(serviceName());
}

void SingleInstanceLinux::openPipe() {
    const QByteArray path = pipePath();
    unlink(path.constData()); // the lock proves that nobody listens there any more
    if (mkfifo(path.constData(), S_IRUSR | S_IWUSR) != 0)
        return;
    // With a writing end of our own, so that the pipe does not end with each caller.
    pipe_ = open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (pipe_ < 0)
        return;
    auto* notifier = new QSocketNotifier(pipe_, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SingleInstanceLinux::heard);
}

void SingleInstanceLinux::heard() {
    char bytes[16];
    while (read(pipe_, bytes, sizeof bytes) > 0) {
    }
    Q_EMIT raiseRequested({});
}

void SingleInstanceLinux::raiseFirst() {
    if (!raiseOverBus() && !folder_.isEmpty())
        raiseOverPipe();
}

bool SingleInstanceLinux::raiseOverBus() {
    if (!bus_.isConnected() || !bus_.interface()->isServiceRegistered(serviceName()))
        return false;
    QVariantMap platformData;
    const QString token =
        qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    if (!token.isEmpty())
        platformData.insert(QStringLiteral("activation-token"), token);
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName(), objectPath(),
                                                       QStringLiteral("org.freedesktop.Application"),
                                                       QStringLiteral("Activate"));
    call << platformData;
    return bus_.call(call, QDBus::Block, raiseTimeoutMilliseconds).type() == QDBusMessage::ReplyMessage;
}

void SingleInstanceLinux::raiseOverPipe() const {
    const int pipe = open(pipePath().constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (pipe < 0)
        return; // the first one is just ending, or just beginning
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(pipe, &byte, 1);
    close(pipe);
}

QByteArray SingleInstanceLinux::pipePath() const {
    return QFile::encodeName(folder_ + QStringLiteral("/fenwhirl.raise"));
}

void SingleInstanceLinux::Activate(const QVariantMap& platformData) {
    Q_EMIT raiseRequested(platformData.value(QStringLiteral("activation-token")).toString());
}
