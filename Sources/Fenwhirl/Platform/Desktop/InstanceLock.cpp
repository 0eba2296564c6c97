#include "Fenwhirl/Platform/Desktop/InstanceLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr const char* lockName = "fenwhirl.lock";
constexpr const char* pipeName = "fenwhirl.raise";
constexpr char lineEnd = '\n';
constexpr qsizetype longestCall = 256; // bytes; a pipe write of this size is atomic on every system

} // namespace

InstanceLock::InstanceLock(QString folder, QObject* parent) : QObject(parent), folder_(std::move(folder)) {}

InstanceLock::~InstanceLock() {
    release();
}

void InstanceLock::release() {
    stopListening();
    if (lock_ >= 0) {
        close(std::exchange(lock_, -1));
    }
}

void InstanceLock::stopListening() {
    notifier_.reset(); // before the descriptor that it watches is closed
    for (int* descriptor : {&openEnd_, &pipe_}) {
        if (*descriptor >= 0) {
            close(std::exchange(*descriptor, -1));
        }
    }
}

QByteArray InstanceLock::file(const char* name) const {
    return QFile::encodeName(folder_ + u'/' + QLatin1String(name));
}

bool InstanceLock::take() {
    if (folder_.isEmpty()) {
        return true;
    }
    lock_ = open(file(lockName).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (lock_ < 0) {
        return true;
    }
    if (flock(lock_, LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    const bool isHeld = errno == EWOULDBLOCK;
    close(std::exchange(lock_, -1));
    return !isHeld;
}

void InstanceLock::listen() {
    if (lock_ < 0) {
        return;
    }
    const QByteArray path = file(pipeName);
    unlink(path.constData()); // safe, because the lock proves that nobody else listens there
    if (mkfifo(path.constData(), S_IRUSR | S_IWUSR) != 0) {
        return;
    }
    // The read end first: a non-blocking open of the write end fails without a reader.
    pipe_ = open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (pipe_ < 0) {
        return;
    }
    openEnd_ = open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    notifier_ = std::make_unique<QSocketNotifier>(pipe_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &InstanceLock::heard);
}

// A call is one line and arrives whole or not at all. An empty line only wakes. A call without a line break
// comes from an older version of the program.
void InstanceLock::heard() {
    QByteArray calls;
    char bytes[256];
    for (ssize_t got = 0; (got = read(pipe_, bytes, sizeof bytes)) > 0;) {
        calls.append(bytes, got);
    }
    if (calls.endsWith(lineEnd)) {
        calls.chop(1);
    }
    bool isOnlyWoken = false;
    for (const QByteArray& word : calls.split(lineEnd)) {
        if (word.isEmpty() || word.contains('\0')) {
            isOnlyWoken = true;
        } else {
            Q_EMIT told(QString::fromUtf8(word));
        }
    }
    if (isOnlyWoken) {
        Q_EMIT called();
    }
}

bool InstanceLock::notifyHolder(const QByteArray& word) const {
    if (folder_.isEmpty() || word.contains(lineEnd) || word.size() >= longestCall) {
        return false;
    }
    const int pipe = open(file(pipeName).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (pipe < 0) {
        return false;
    }
    const QByteArray call = word + lineEnd;
    // The holder may have closed its end in the meantime. Then the write must fail instead of ending us.
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    const ssize_t written = write(pipe, call.constData(), static_cast<std::size_t>(call.size()));
    (void)std::signal(SIGPIPE, before);
    close(pipe);
    return written == call.size();
}

bool belongsToUserAlone(const QString& folder) {
    struct stat status = {};
    return lstat(QFile::encodeName(folder).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

QString privateFolder(const QString& path) {
    if (!QDir().mkpath(QFileInfo(path).path())) {
        return {};
    }
    mkdir(QFile::encodeName(path).constData(), S_IRWXU); // fails harmlessly if the folder exists
    return belongsToUserAlone(path) ? path : QString();
}

} // namespace Fenwhirl
