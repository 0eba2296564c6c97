// The observable list of the applications that load the processor most, and the quitting of one of them.
//
// While the apps page is shown (`start` to `stop`) it takes a sample of all processes at once and then every
// four seconds. The last list stays while the page is hidden, so that it is there at once when the page comes
// back.
//
// Threads: the object lives on the main thread; properties, signals and operations belong there. Samples are
// taken on its serial queue "fenwhirl.processes". A request that comes while a sample is under way is
// dropped, not queued, so slow samples never pile up.
//
// Ownership: one object for the life of the process, made by the application and also reachable as shared();
// everything it asks of the outside comes in through ProcessServices. The destructor cancels the sample under
// way and waits for its end.

#pragma once

#include "Fenwhirl/Platform/MainThreadInbox.h"
#include "Fenwhirl/Platform/SerialQueue.h"
#include "Fenwhirl/Processes/AppLoad.h"
#include "Fenwhirl/Processes/ProcessServices.h"

#include <QList>
#include <QObject>
#include <QTimer>

class ProcessMonitor : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProcessMonitor)

public:
    explicit ProcessMonitor(ProcessServices services, QObject* parent = nullptr);
    ~ProcessMonitor() override;

    // The application's monitor (the oldest one alive); null before it exists and after it is gone.
    [[nodiscard]] static ProcessMonitor* shared();

    // Heaviest first, at most 14; empty before the first sample and when none can be taken.
    [[nodiscard]] const QList<AppLoad>& apps() const { return sample_.apps; }

    // Percent of the whole machine, over all processes, also those not listed. Not a number when the system
    // reports such a share: what shows it must be ready for that.
    [[nodiscard]] double totalCPU() const { return sample_.totalCPU; }

    // The apps page appears: samples now and from then on regularly. Nothing when already started.
    void start();
    // The apps page disappears: no further sample begins by itself.
    void stop();
    // Takes one sample, or nothing while one is under way.
    void refresh();
    // Asks the application to quit (AppQuitting.h), without its consent when `force`, and samples again when
    // it had time to. For after the user's confirmation; does not look at `canQuit`.
    void quit(const AppLoad& app, bool force);

Q_SIGNALS:
    void appsChanged();
    void totalCPUChanged();

private:
    void publish(const ProcessSample& sample);

    ProcessServices services_;
    ProcessSample sample_;
    QTimer timer_;
    bool busy_ = false; // a sample is under way; main thread only
    MainThreadInbox inbox_;
    SerialQueue queue_; // last, so that it ends first: its work uses the members above
};
