// The observable list of the applications that load the processor most; it can also quit one of them.
//
// While the apps page is shown (from `start` to `stop`), the monitor takes a sample of all processes
// immediately and then every four seconds. It keeps the last list while the page is hidden, so that the list
// is there at once when the page comes back.
//
// Threads: the object lives on the main thread, and so do its properties, signals and operations. Samples are
// taken on its serial queue "fenwhirl.processes". A request that arrives while a sample is in progress is
// dropped, not queued, so that slow samples never pile up.
//
// Ownership: one object for the life of the process, created by the application and also reachable as
// shared(). All its dependencies on the system come in through ProcessServices. The destructor cancels the
// sample in progress and waits for it to end.

#pragma once

#include "Fenwhirl/Platform/Toolkit/MainThreadInbox.h"
#include "Fenwhirl/Platform/Toolkit/SerialQueue.h"
#include "Fenwhirl/Processes/AppLoad.h"
#include "Fenwhirl/Processes/ProcessServices.h"

#include <QList>
#include <QObject>
#include <QTimer>

namespace Fenwhirl {

class ProcessMonitor : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ProcessMonitor)

public:
    explicit ProcessMonitor(ProcessServices services, QObject* parent = nullptr);
    ~ProcessMonitor() override;

    // The application's monitor (the oldest one alive); null before it is created and after it is destroyed.
    [[nodiscard]] static ProcessMonitor* shared();

    // Heaviest first, at most 14; empty before the first sample and when no sample can be taken.
    [[nodiscard]] const QList<AppLoad>& apps() const { return sample_.apps; }

    // Percent of the whole machine, over all processes, including those not listed. NaN when the system
    // reports such a value; the views must cope with that.
    [[nodiscard]] double totalCPU() const { return sample_.totalCPU; }

    // To be called when the apps page appears: samples now and regularly from then on. Does nothing when
    // already started.
    void start();
    // To be called when the apps page disappears: no further sample begins automatically.
    void stop();
    // Takes one sample; does nothing while one is in progress.
    void refresh();
    // Asks the application to quit (AppQuitting.h), or forces it to when `force`, and samples again once it
    // has had time to. To be called after the user has confirmed; does not check `canQuit`.
    void quit(const AppLoad& app, bool force);

Q_SIGNALS:
    void appsChanged();
    void totalCPUChanged();

private:
    void publish(const ProcessSample& sample);

    ProcessServices services_;
    ProcessSample sample_;
    QTimer timer_;
    bool busy_ = false; // a sample is in progress; main thread only
    MainThreadInbox inbox_;
    SerialQueue queue_; // last, so that it is destroyed first: its work uses the members above
};

} // namespace Fenwhirl
