// Checks the texts of all sources, gathered by the build, against the translation tables.

#include "Fenwhirl/Localization/FrenchTexts.h"
#include "Fenwhirl/Localization/SystemTerms.h"

#include <QString>

#include <algorithm>
#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

namespace {

struct Shown {
    std::string kind;
    std::string place; // "Fenwhirl/Views/AppsView.qml:12"
    QString text;
};

std::vector<Shown> gathered() {
    std::vector<Shown> texts;
    std::ifstream list(FENWHIRL_SHOWN_TEXTS);
    for (std::string line; std::getline(list, line);) {
        const auto first = line.find('\t');
        const auto second = line.find('\t', first + 1);
        const auto third = line.find('\t', second + 1);
        QString text = QString::fromStdString(line.substr(third + 1));
        text.replace(QStringLiteral("\\n"), QStringLiteral("\n"))
            .replace(QStringLiteral("\\t"), QStringLiteral("\t"));
        texts.push_back({line.substr(0, first), line.substr(first + 1, second - first - 1), text});
    }
    return texts;
}

bool hasRow(const QString& text) {
    return std::ranges::find(frenchTexts, std::u16string_view(text.toStdU16String())) != frenchTexts.end();
}

// Whether the texts of this file are exempt from the tables. Each entry gives the reason.
bool isExemptFile(std::string_view place) {
    static constexpr std::array<std::string_view, 19> files = {
        // The tables themselves, the letters of the transliteration, and the languages' own names.
        "Fenwhirl/Localization/FrenchTexts.h", "Fenwhirl/Localization/Tables/",
        "Fenwhirl/Localization/SystemTerms.cpp", "Fenwhirl/Localization/DialogTexts.cpp",
        "Fenwhirl/Localization/Cyrillic.cpp", "Fenwhirl/Localization/LanguageNames.cpp",
        // The report is read by the people who give support. It is always French.
        "FenwhirlCore/SMCReport", "FenwhirlCore/SMCFanWriteTest", "Fenwhirl/Monitoring/DiagnosticReport",
        // The system's own processes keep their French labels in every language.
        "Fenwhirl/Processes/FriendlyName",
        // Keywords of desktop entries.
        "Fenwhirl/Processes/DesktopEntries",
        // Texts for the system, not for the user: AppleScript, property lists, desktop entries, folders.
        "Fenwhirl/Platform/ScriptNotifier", "Fenwhirl/Platform/LoginItemFile",
        "Fenwhirl/Platform/Desktop/ApplicationIcon", "Fenwhirl/Platform/Desktop/SingleInstanceMacOS",
        // Printed in English, for scripts and terminals.
        "Fenwhirl/Application/CommandLine", "Fenwhirl/Application/SelfCheck/",
        "Fenwhirl/Platform/Desktop/SystemChecks",
        // The update alert has its own texts in every language.
        "Fenwhirl/Updates/"};
    return std::ranges::any_of(files, [place](std::string_view file) { return place.starts_with(file); });
}

// Whether this text is shown unchanged in every language.
bool isShownUntranslated(const QString& text) {
    static const std::set<QString> texts = {
        QStringLiteral("Fenwhirl"),
        QStringLiteral("Fenwhirl 0.1"),
        QStringLiteral("Fenwhirl-diagnostic.txt"),
        QStringLiteral(" °C"),
        QStringLiteral("°C"),
        // The reason given for an activity, visible in the system's tools only.
        QStringLiteral("Fenwhirl controls the fans"),
        // The name of the guard's control group, likewise.
        QStringLiteral("Fenwhirl's guard"),
        // The reason given for delaying sleep, likewise.
        QStringLiteral("Fenwhirl hands the fans back first"),
    };
    return texts.contains(text);
}

} // namespace

TEST(ShownTexts, AreGathered) {
    EXPECT_GT(gathered().size(), 1000U);
}

TEST(ShownTexts, ThatAreAskedForHaveARow) {
    for (const Shown& shown : gathered()) {
        if (shown.kind == "asked") {
            EXPECT_TRUE(hasRow(shown.text)) << shown.place << ": \"" << shown.text.toStdString() << '"';
        }
    }
}

TEST(ShownTexts, ThatAreWordsOfTheSystemAreKnown) {
    const QStringList known = SystemTerms::all();
    for (const Shown& shown : gathered()) {
        if (shown.kind == "system") {
            EXPECT_TRUE(known.contains(shown.text))
                << shown.place << ": \"" << shown.text.toStdString() << '"';
        }
    }
}

TEST(ShownTexts, AreNeverLookedUpByRuntimeValues) {
    for (const Shown& shown : gathered()) {
        EXPECT_NE(shown.kind, "dynamic")
            << shown.place << ": qsTr() without a text; ask where the text stands";
    }
}

TEST(ShownTexts, AreAllAskedForOrStayAsTheyAre) {
    for (const Shown& shown : gathered()) {
        const bool ofTheProduct = shown.place.starts_with("Fenwhirl");
        const bool isOfTheSystem = SystemTerms::all().contains(shown.text);
        if (shown.kind == "loose" && ofTheProduct && !isExemptFile(shown.place) && !isOfTheSystem &&
            !isShownUntranslated(shown.text)) {
            // Sensors have their French names in a table of their own, which SensorLabel looks up.
            EXPECT_TRUE(hasRow(shown.text.trimmed()) && !shown.place.ends_with(".qml"))
                << shown.place << ": \"" << shown.text.toStdString()
                << "\" is shown in French in every language";
        }
    }
}

TEST(ShownTexts, OfTheTablesAreAllShownSomewhere) {
    std::set<QString> written;
    for (const Shown& shown : gathered()) {
        if (!shown.place.starts_with("Fenwhirl/Localization/FrenchTexts.h") &&
            !shown.place.starts_with("Fenwhirl/Localization/Tables/")) {
            // The words of generated sensor names are stored with the blank that follows them.
            written.insert(shown.text.trimmed());
        }
    }
    for (const std::u16string_view french : frenchTexts) {
        const QString text = QStringView(french).toString();
        EXPECT_TRUE(written.contains(text))
            << '"' << text.toStdString() << "\" is translated but never shown";
    }
}

} // namespace Fenwhirl
