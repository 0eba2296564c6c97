#include "Fenwhirl/Processes/FriendlyName.h"

#include <algorithm>
#include <array>

namespace Fenwhirl {

namespace {

struct LabelledProcess {
    QStringView name;
    QStringView label;
};

constexpr std::array labelledProcesses = {
    LabelledProcess{u"WindowServer", u"Affichage de l'écran"},
    LabelledProcess{u"TouchBarServer", u"Touch Bar"},
    LabelledProcess{u"ControlStrip", u"Touch Bar (barre de contrôle)"},
    LabelledProcess{u"BTLEServer", u"Bluetooth"},
    LabelledProcess{u"bluetoothd", u"Bluetooth"},
    LabelledProcess{u"UniversalControl", u"Contrôle universel (Mac et iPad)"},
    LabelledProcess{u"com.apple.Virtualization.VirtualMachine", u"Machine virtuelle"},
    LabelledProcess{u"kernel_task", u"Système macOS (refroidissement)"},
    LabelledProcess{u"mds_stores", u"Recherche Spotlight"},
    LabelledProcess{u"mdworker_shared", u"Recherche Spotlight"},
    LabelledProcess{u"backupd", u"Time Machine"},
    LabelledProcess{u"photoanalysisd", u"Analyse des Photos"},
    LabelledProcess{u"cloudd", u"iCloud"},
    LabelledProcess{u"bird", u"iCloud Drive"},
    LabelledProcess{u"coreaudiod", u"Son"},
    LabelledProcess{u"duetexpertd", u"Suggestions de macOS"},
    LabelledProcess{u"com.apple.AppleUserHIDDrivers", u"Clavier, souris et trackpad"},
    LabelledProcess{u"Dock", u"Dock"},
    LabelledProcess{u"Finder", u"Finder"},
};

} // namespace

QString friendlyName(QStringView processName,
                     const std::function<QString(const QString& frenchLabel)>& localize) {
    const auto* const found =
        std::find_if(labelledProcesses.begin(), labelledProcesses.end(),
                     [processName](const LabelledProcess& process) { return process.name == processName; });
    return found == labelledProcesses.end() ? processName.toString() : localize(found->label.toString());
}

} // namespace Fenwhirl
