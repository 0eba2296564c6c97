// logind behind SleepWatch on Linux.
//
// While the computer is awake this object has a delay lock of logind's: a descriptor, and logind waits with a
// sleep until it is closed, a few seconds at most. It is closed by `ready`, or after `atMost`, and taken anew
// after the sleep. Without the lock (logind refused it) a sleep is announced all the same; it just does not
// wait.
//
// What ends a sleep is logind's word. Lest one that was lost keeps the program asleep for good, logind is
// asked now and then; anything but a plain yes, silence included, means awake. These pauses are measured in
// running time: the sleep itself does not count.
//
// Threads: main thread only. Tests make it with a bus and times of their own.

#pragma once

#include "Fenwhirl/Platform/LogindConnectionLinux.h"
#include "Fenwhirl/Platform/SleepWatch.h"

#include <QDBusUnixFileDescriptor>
#include <QString>
#include <QTimer>

#include <chrono>

struct SleepPatience {
    std::chrono::milliseconds atMost = std::chrono::milliseconds(1500); // for which the sleep is delayed
    std::chrono::milliseconds answer = std::chrono::seconds(5);         // for each question
    std::chrono::milliseconds doubt = std::chrono::seconds(20);         // until a sleep is asked about
    std::chrono::milliseconds again = std::chrono::seconds(10);         // until a lost bus or a silent logind
                                                                        // is tried again
};

class SleepWatchLinux : public SleepWatch {
    Q_OBJECT

public:
    // `address`: of the bus, in D-Bus's notation.
    explicit SleepWatchLinux(QString address, SleepPatience patience = {});

    void ready() override;

private:
    void open();
    void find();
    void takeOwner(const QString& owner);
    void heard(const QDBusMessage& signal);
    // Asks whether the computer is about to sleep.
    void look();
    void take(bool isAboutToSleep);
    void lock();

    LogindConnection logind_;
    QDBusUnixFileDescriptor lock_;
    bool isAboutToSleep_ = false;
    bool isLocking_ = false; // asked for, not yet answered
    bool wasAnswered_ = false;
    QTimer delay_;
    QTimer doubt_;
    QTimer again_;
};
