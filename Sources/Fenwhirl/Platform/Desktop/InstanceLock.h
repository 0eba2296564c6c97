// How the starts of the program by one user know of each other: a locked file, and a named pipe beside it
// through which a later start asks the first one to show itself, or tells it something.
//
// The kernel gives the lock to exactly one process, however many start at the same moment, and takes it back
// however that one ends. Both files stay where they are; only the lock says whether somebody is there.
//
// Threads: main thread only, after the application object exists.

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

class InstanceLock : public QObject {
    Q_OBJECT

public:
    // `folder` belongs to this user alone (see below); empty means that there is no place for a lock.
    explicit InstanceLock(QString folder, QObject* parent = nullptr);
    ~InstanceLock() override;
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // False exactly when another process holds the lock. Where there can be none (no folder, a file system
    // without locks) nobody can tell, and the program rather runs. Asked once.
    [[nodiscard]] bool take();

    // For the holder: begins to hear calls.
    void listen();
    // For a holder that is not to be the first after all.
    void release();

    // Wakes the process that holds the lock, and tells it a word where there is one; does not wait for it.
    // False when it is not there to hear it, as while it is just beginning or just ending, and for a word
    // that is too long for one call or holds a line's end.
    [[nodiscard]] bool callHolder(const QByteArray& word = {}) const;

Q_SIGNALS:
    // Another process has called the holder, which is this one and listens.
    void called();
    // The same, with a word: whatever it wrote.
    void told(const QString& word);

private:
    [[nodiscard]] QByteArray file(const char* name) const;
    void heard();

    QString folder_;
    int lock_ = -1;
    int pipe_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    int openEnd_ = -1; // a writing end of our own, so that the pipe does not end with each caller
};

// Whether this is a real folder, no link, that belongs to this user and that nobody else may enter.
[[nodiscard]] bool belongsToUserAlone(const QString& folder);

// Makes the folder, and its parents, unless it is there already; `path`, or nothing when what is there does
// not belong to this user alone.
[[nodiscard]] QString privateFolder(const QString& path);
