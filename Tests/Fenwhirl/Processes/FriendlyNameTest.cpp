#include "Fenwhirl/Processes/FriendlyName.h"

#include <array>
#include <gtest/gtest.h>
#include <utility>

namespace {

QString labelOf(const char* name) {
    return systemProcessLabel(QString::fromUtf8(name)).value_or(QString());
}

} // namespace

TEST(FriendlyName, LabelsEveryWellKnownProcess) {
    constexpr std::array<std::pair<const char*, const char*>, 19> labels = {{
        {"WindowServer", "Affichage de l'écran"},
        {"TouchBarServer", "Touch Bar"},
        {"ControlStrip", "Touch Bar (barre de contrôle)"},
        {"BTLEServer", "Bluetooth"},
        {"bluetoothd", "Bluetooth"},
        {"UniversalControl", "Contrôle universel (Mac et iPad)"},
        {"com.apple.Virtualization.VirtualMachine", "Machine virtuelle"},
        {"kernel_task", "Système macOS (refroidissement)"},
        {"mds_stores", "Recherche Spotlight"},
        {"mdworker_shared", "Recherche Spotlight"},
        {"backupd", "Time Machine"},
        {"photoanalysisd", "Analyse des Photos"},
        {"cloudd", "iCloud"},
        {"bird", "iCloud Drive"},
        {"coreaudiod", "Son"},
        {"duetexpertd", "Suggestions de macOS"},
        {"com.apple.AppleUserHIDDrivers", "Clavier, souris et trackpad"},
        {"Dock", "Dock"},
        {"Finder", "Finder"},
    }};
    for (const auto& [name, label] : labels) {
        EXPECT_EQ(labelOf(name), QString::fromUtf8(label)) << name;
    }
}

TEST(FriendlyName, KnowsNoOtherProcess) {
    for (const char* name : {"", "windowserver", "WindowServer ", "Dock2", "finder", "mds"}) {
        EXPECT_FALSE(systemProcessLabel(QString::fromUtf8(name))) << name;
    }
}
