// Turns the signals that request the end of the process into an ordinary call on the main thread.
//
// Without this, Ctrl-C in a terminal, the end of a session or `kill` would end the program at once, and fans
// under manual control would never be handed back. Covers SIGTERM, SIGINT, SIGHUP and SIGQUIT. A signal that
// was ignored when the program was started (nohup) stays ignored. The handler only writes a byte to a pipe.
//
// Threads: created and destroyed on the main thread, after the application object; one at a time. The
// destructor restores the previous handlers. POSIX, the same on every system.

#pragma once

#include <QObject>

#include <array>
#include <csignal>

class QSocketNotifier;

namespace Fenwhirl {

class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

Q_SIGNALS:
    // Emitted from the event loop, once for all signals that arrived since its last turn.
    void received();

private:
    void drain();

    static constexpr std::array<int, 4> handled = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};
    std::array<int, 2> pipe_ = {-1, -1};
    std::array<struct sigaction, handled.size()> previous_ = {};
};

} // namespace Fenwhirl
