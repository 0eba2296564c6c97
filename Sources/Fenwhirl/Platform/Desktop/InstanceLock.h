// Lets the instances of the program that one user starts find each other. There is a lock file and, beside
// it, a named pipe through which a later instance asks the first one to show itself, or sends it a message.
//
// The kernel grants the lock to exactly one process, however many start at the same moment, and releases it
// however that process ends. Both files are never removed; only the lock says whether an instance is running.
//
// Threads: main thread only, after the application object exists.

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

namespace Fenwhirl {

class InstanceLock : public QObject {
    Q_OBJECT

public:
    // `folder` must belong to this user alone (see below). If it is empty there is nowhere to put a lock.
    explicit InstanceLock(QString folder, QObject* parent = nullptr);
    ~InstanceLock() override;
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // Takes the lock. False if and only if another process has it. Where no lock is possible (no folder, or a
    // file system without locks) the result is true, because running is better than refusing to. After
    // false it may be called again.
    [[nodiscard]] bool take();

    // For the instance with the lock: starts to receive calls.
    void listen();
    // For the instance that is about to end: receives no more calls, but keeps the lock. In other instances
    // `notifyHolder` is then false, which tells them to wait for the lock.
    void stopListening();
    // For an instance with the lock that turns out not to be the first after all.
    void release();

    // Wakes the instance that has the lock and, unless `word` is empty, sends it that message. Does not wait
    // for it. False when that instance does not listen, for example while it is just starting or just ending,
    // and when the message is too long for one call or contains a line break.
    [[nodiscard]] bool notifyHolder(const QByteArray& word = {}) const;

Q_SIGNALS:
    // Another process has called this one, which has the lock and listens.
    void called();
    // The same, with a message. It is not validated in any way.
    void told(const QString& word);

private:
    [[nodiscard]] QByteArray file(const char* name) const;
    void heard();

    QString folder_;
    int lock_ = -1;
    int pipe_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    int openEnd_ = -1; // a write end of our own, so that the pipe does not reach its end with each caller
};

// Whether this is a real folder (not a link) that belongs to this user and that nobody else may enter.
[[nodiscard]] bool belongsToUserAlone(const QString& folder);

// Creates the folder, and its parents, unless it exists. Returns `path`, or an empty text when the folder
// does not belong to this user alone.
[[nodiscard]] QString privateFolder(const QString& path);

} // namespace Fenwhirl
