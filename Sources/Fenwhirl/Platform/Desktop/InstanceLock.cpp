#include "Fenwhirl/Platform/Desktop/InstanceLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* lockName = "fenwhirl.lock";
constexpr const char* pipeName = "fenwhirl.raise";

} // namespace

InstanceLock::InstanceLock(QString folder, QObject* parent) : QObject(parent), folder_(std::move(folder)) {}

InstanceLock::~InstanceLock() {
    release();
}

void InstanceLock::release() {
    notifier_.reset(); // before what it watches
    for (int* descriptor : {&openEnd_, &pipe_, &lock_}) {
        if (*descriptor >= 0)
            close(std::exchange(*descriptor, -1));
    }
}

QByteArray InstanceLock::file(const char* name) const {
    return QFile::encodeName(folder_ + u'/' + QLatin1String(name));
}

bool InstanceLock::take() {
    if (folder_.isEmpty())
        return true;
    lock_ = open(file(lockName).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (lock_ < 0)
        return true;
    if (flock(lock_, LOCK_EX | LOCK_NB) == 0)
        return true;
    const bool isHeld = errno == EWOULDBLOCK;
    close(std::exchange(lock_, -1));
    return !isHeld;
}

void InstanceLock::listen() {
    if (lock_ < 0)
        return;
    const QByteArray path = file(pipeName);
    unlink(path.constData()); // the lock proves that nobody listens there any more
    if (mkfifo(path.constData(), S_IRUSR | S_IWUSR) != 0)
        return;
    // The reading end first: without one there is no writing end that does not wait.
    pipe_ = open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (pipe_ < 0)
        return;
    openEnd_ = open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    notifier_ = std::make_unique<QSocketNotifier>(pipe_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &InstanceLock::heard);
}

void InstanceLock::heard() {
    char bytes[16];
    while (read(pipe_, bytes, sizeof bytes) > 0) {
    }
    Q_EMIT called();
}

void InstanceLock::callHolder() const {
    if (folder_.isEmpty())
        return;
    const int pipe = open(file(pipeName).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (pipe < 0)
        return;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(pipe, &byte, 1);
    close(pipe);
}

bool belongsToUserAlone(const QString& folder) {
    struct stat status = {};
    return lstat(QFile::encodeName(folder).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

QString privateFolder(const QString& path) {
    if (!QDir().mkpath(QFileInfo(path).path()))
        return {};
    mkdir(QFile::encodeName(path).constData(), S_IRWXU); // fails where it is there already
    return belongsToUserAlone(path) ? path : QString();
}
