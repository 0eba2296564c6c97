// Turns the signals that ask the process to end into an ordinary call on the main thread.
//
// Without this a terminal's Ctrl-C, a session's end or `kill` would end the program at once, and fans under
// manual control would never be handed back. Covers SIGTERM, SIGINT, SIGHUP and SIGQUIT; one that the starter
// of the program had ignored (nohup) stays ignored. The handler only writes a byte into a pipe.
//
// Threads: made and destroyed on the main thread, after the application object; one at a time. The destructor
// restores what was there before. POSIX, the same on every system.

#pragma once

#include <QObject>

#include <array>
#include <csignal>

class QSocketNotifier;

class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

Q_SIGNALS:
    // Once per wave of signals, with the event loop's next turn.
    void received();

private:
    void drain();

    static constexpr std::array<int, 4> handled = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};
    std::array<int, 2> pipe_ = {-1, -1};
    std::array<struct sigaction, handled.size()> previous_ = {};
};
