// SleepWatch on Linux, by means of logind.
//
// While the computer is awake, this object has a delay lock of logind's: a file descriptor that makes logind
// delay a sleep until it is closed, for a few seconds at most. `ready` closes it, or a timer after `atMost`;
// after the sleep a new one is taken. If logind refuses the lock, a sleep is still announced, but not
// delayed.
//
// logind reports the end of a sleep. If that report were lost, the program would believe for ever that the
// computer sleeps, so it asks logind from time to time. Anything but a plain yes means awake, including no
// answer. The intervals are measured in running time, without the sleep itself.
//
// Threads: main thread only. Tests pass a bus and times of their own.

#pragma once

#include "Fenwhirl/Platform/Session/LogindConnectionLinux.h"
#include "Fenwhirl/Platform/Session/SleepWatch.h"

#include <QDBusUnixFileDescriptor>
#include <QString>
#include <QTimer>

#include <chrono>

namespace Fenwhirl {

struct SleepTimeouts {
    std::chrono::milliseconds atMost = std::chrono::milliseconds(1500); // for which the sleep is delayed
    std::chrono::milliseconds answer = std::chrono::seconds(5);         // time limit for each reply
    std::chrono::milliseconds doubt = std::chrono::seconds(20);         // until a sleep is checked
    std::chrono::milliseconds again = std::chrono::seconds(10);         // until a lost bus or a silent logind
                                                                        // is tried again
};

class SleepWatchLinux : public SleepWatch {
    Q_OBJECT

public:
    // `address` is the bus's address, in D-Bus notation.
    explicit SleepWatchLinux(QString address, SleepTimeouts patience = {});

    void ready() override;

private:
    void open();
    void find();
    void takeOwner(const QString& owner);
    void heard(const QDBusMessage& signal);
    // Asks logind whether the computer is about to sleep.
    void look();
    void take(bool isAboutToSleep);
    void lock();

    LogindConnection logind_;
    QDBusUnixFileDescriptor lock_;
    bool isAboutToSleep_ = false;
    bool isLocking_ = false; // the lock was requested, and there is no answer yet
    bool wasAnswered_ = false;
    QTimer delay_;
    QTimer doubt_;
    QTimer again_;
};

} // namespace Fenwhirl
