#include "Fenwhirl/Processes/FriendlyName.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <array>
#include <gtest/gtest.h>
#include <utility>

namespace Fenwhirl {

namespace {

QString labelOf(const char* name) {
    return friendlyName(QString::fromUtf8(name), [](const QString& label) { return u'<' + label + u'>'; });
}

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

} // namespace

TEST(FriendlyName, LabelsEveryWellKnownProcess) {
    for (const auto& [name, label] : labels) {
        EXPECT_EQ(labelOf(name), u'<' + QString::fromUtf8(label) + u'>') << name;
    }
}

TEST(FriendlyName, LabelsAreFrenchInEveryLanguage) {
    const auto inTheInterfaceLanguage = [](const QString& label) { return localized(label); };
    for (const AppLanguage language : allAppLanguages) {
        Localizer::setLanguage(language);
        for (const auto& [name, label] : labels) {
            EXPECT_EQ(friendlyName(QString::fromUtf8(name), inTheInterfaceLanguage),
                      QString::fromUtf8(label));
        }
    }
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(FriendlyName, OtherProcessesKeepTheirOwn) {
    for (const char* name : {"", "windowserver", "WindowServer ", "Dock2", "finder", "mds"}) {
        EXPECT_EQ(labelOf(name), QString::fromUtf8(name)) << name;
    }
}

} // namespace Fenwhirl
