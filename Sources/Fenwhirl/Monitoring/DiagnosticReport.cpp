#include "Fenwhirl/Monitoring/DiagnosticReport.h"

namespace Fenwhirl {

std::string diagnosticReportText(const MonitorServices& services, bool withFanTest,
                                 const std::atomic<bool>& stop) {
    std::string text = "Impossible d'ouvrir le SMC (AppleSMC).";
    if (const auto smc = services.openSMC()) {
        smc->setStopFlag(&stop);
        text = smc->diagnosticReport();
    }
    const bool installed = services.helper.isInstalled();
    text += "\n\nAssistant installé : ";
    text += installed ? "oui" : "non";
    if (withFanTest && installed) {
        text += "\n\n-- Test d'écriture (6 s) --\n";
        text += services.helper.output({"test"});
    }
    return text;
}

} // namespace Fenwhirl
