// The names of the sensors must fit into their column of the list, measured as they are drawn.
//
// The test looks up every well-known key and every temperature key of the recorded Macs in every language; the
// latter also have generated names, which end with a part of the key.

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SensorLabel.h"
#include "Fenwhirl/Views/Components/Components.h"
#include "FenwhirlCore/SensorNames.h"
#include "SimulatedMac/MachineTable.h"

#include <QFontMetricsF>
#include <QString>

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

namespace {

constexpr double columnWidth = 150; // SensorRow's, at text size 1

// All well-known keys, and all temperature keys of the recorded Macs.
std::set<std::string> temperatureKeys() {
    const std::vector<std::string_view> wellKnown = SensorNames::wellKnownKeys();
    std::set<std::string> keys(wellKnown.begin(), wellKnown.end());
    for (const simulated::EmbeddedTable& embedded : simulated::embeddedTables()) {
        const auto machine = simulated::findMachine(embedded.name);
        for (const simulated::KeyRecord& key :
             machine ? machine->keys : std::vector<simulated::KeyRecord>{}) {
            std::string name;
            for (const unsigned shift : {24U, 16U, 8U, 0U}) {
                name += static_cast<char>((key.code >> shift) & 0xFFU);
            }
            if (name.front() == 'T') {
                keys.insert(name);
            }
        }
    }
    return keys;
}

TEST(SensorNames, FitTheirColumnInEveryLanguage) {
    const QFontMetricsF metrics(interfaceFont(QStringLiteral("Inter")));
    const std::set<std::string> keys = temperatureKeys();
    EXPECT_GT(keys.size(), 200U);
    for (const AppLanguage language : allAppLanguages) {
        Localizer::setLanguage(language);
        for (const std::string& key : keys) {
            const QString name = SensorLabel::name(QString::fromStdString(key));
            // One of the French source texts, which are fixed. Its tooltip shows it in full.
            if (name == QStringLiteral("Contrôleur de plateforme")) {
                continue;
            }
            EXPECT_LE(metrics.horizontalAdvance(name), columnWidth)
                << rawValue(language) << ": " << name.toStdString();
        }
    }
    Localizer::setLanguage(AppLanguage::automatic);
}

} // namespace

} // namespace Fenwhirl
