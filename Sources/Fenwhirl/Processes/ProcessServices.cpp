#include "Fenwhirl/Processes/ProcessServices.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Platform/Processes/RunningApplications.h"
#include "Fenwhirl/Processes/ApplicationLookup.h"
#include "Fenwhirl/Processes/ProcessListing.h"

#include <QCoreApplication>

#include <memory>

namespace Fenwhirl {

namespace {

ProcessSample sampleProcesses(ProcessTable& table, ApplicationLookup* lookup, FoldContext context) {
    const std::optional<QByteArray> listing = table.listing();
    if (!listing) {
        return {};
    }
    if (lookup != nullptr) {
        context.applicationOf = lookup->forListing(table);
    }
    ProcessSample sample = groupProcesses(*listing, context);
    for (AppLoad& app : sample.apps) {
        for (const qint32 pid : app.pids) {
            app.starts.append(table.startWhenListed(pid));
        }
    }
    return sample;
}

} // namespace

ProcessServices systemProcessServices() {
    const std::shared_ptr<ProcessTable> table = openProcessTable();
    const auto ownPid = static_cast<qint32>(QCoreApplication::applicationPid());

    ProcessServices services;
    services.sample = [table, ownPid,
                       lookup = std::shared_ptr<ApplicationLookup>(ApplicationLookup::create())] {
        // The number of processors can change while the program runs.
        const FoldContext context{activeProcessorCount(), ownPid, BundleInfo::path(),
                                  [](const QString& label) { return localized(label); }};
        return sampleProcesses(*table, lookup.get(), context);
    };
    services.cancelSampling = [table] { table->cancel(); };
    services.quit.ownPid = ownPid;
    services.quit.startOf = startOfProcess;
    services.quit.askApplication = askApplicationToTerminate;
    services.quit.sendSignal = signalProcess;
    return services;
}

} // namespace Fenwhirl
