// The text of every page: the size, weight and colour in which each text of the design is drawn.

#include "Fenwhirl/Views/Components/Palette.h"
#include "Stage.h"

#include <QFont>
#include <QHash>
#include <QQuickItem>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace Fenwhirl {

namespace {

struct Letters {
    int pixels = 0;
    int weight = 0;
    QRgb color = 0;

    bool operator==(const Letters&) const = default;
};

void PrintTo(const Letters& letters, std::ostream* out) {
    *out << letters.pixels << " px, weight " << letters.weight << ", "
         << QColor::fromRgba(letters.color).name(QColor::HexArgb).toStdString();
}

struct Wanted {
    const char* text; // when it ends in "…", only its beginning
    int pixels;
    int weight = QFont::Normal;
    PaletteColor color = PaletteColor::text;
};

QRgb ink(PaletteColor name) {
    return palette(true)[static_cast<std::size_t>(name)].rgba();
}

bool fits(const QString& text, QString wanted) {
    if (!wanted.endsWith(u'…')) {
        return text == wanted;
    }
    wanted.chop(1);
    return text.startsWith(wanted);
}

// The first visible item with this text: a Label, a Paragraph, or digits in cells of equal width.
std::optional<Letters> lettersOf(const QQuickItem& item, const QString& wanted) {
    if (!item.isVisible()) {
        return std::nullopt;
    }
    const QVariant size = item.property("size");
    QString text = item.property("content").toString();
    if (text.isEmpty()) {
        text = item.property("text").toString();
    }
    text.replace(QChar(0xA0), u' ').replace(QChar(0x202F), u' ').replace(u'’', u'\'');
    const QVariant color = item.property("color");
    if (size.isValid() && color.isValid() && fits(text, wanted)) {
        const QVariant weight = item.property("weight");
        return Letters{.pixels = size.toInt(),
                       .weight =
                           weight.isValid() ? weight.toInt() : item.property("font").value<QFont>().weight(),
                       .color = color.value<QColor>().rgba()};
    }
    for (const QQuickItem* child : item.childItems()) {
        if (const auto found = lettersOf(*child, wanted)) {
            return found;
        }
    }
    return std::nullopt;
}

void expectLetters(Stage& stage, std::initializer_list<Wanted> all) {
    for (const Wanted& wanted : all) {
        const auto found = lettersOf(*stage.window().contentItem(), QString::fromUtf8(wanted.text));
        ASSERT_TRUE(found) << "\"" << wanted.text << "\" is not shown";
        EXPECT_EQ(*found, (Letters{wanted.pixels, wanted.weight, ink(wanted.color)})) << wanted.text;
    }
}

constexpr int bold = QFont::Bold;
constexpr int semibold = QFont::DemiBold;
constexpr int regular = QFont::Normal;

FanSetting inMode(FanModeKind mode) {
    FanSetting setting;
    setting.mode = mode;
    return setting;
}

TEST(Typography, OfTheSidebar) {
    Stage stage;
    stage.show();
    expectLetters(stage, {{"Fenwhirl", 15, semibold},
                          {"Ventilateurs", 14, regular, PaletteColor::secondaryText},
                          {"Tout est normal", 13}});
    stage.monitor().setSelectedPage(Page::fans);
    expectLetters(stage, {{"Ventilateurs", 14, regular, PaletteColor::accentSoft}});
}

TEST(Typography, OfTheDashboard) {
    Stage stage;
    stage.world.setCelsius(63);
    stage.showPage(Page::dashboard);
    expectLetters(stage, {{"MacBook de Camille", 13, regular, PaletteColor::muted},
                          {"Température du processeur", 14, semibold},
                          {"63", 22, bold},
                          {" °C", 13},
                          {"Mac en bonne santé", 12, regular, PaletteColor::muted},
                          {"il y a 10 min", 12, regular, PaletteColor::muted},
                          {"maintenant", 12, regular, PaletteColor::muted},
                          {"Processeur (proximité)", 13},
                          {"63 °C", 13},
                          {"Préréglage", 13, regular, PaletteColor::muted}});
    EXPECT_EQ(lettersOf(*stage.window().contentItem(), QStringLiteral("Personnalisé"))->pixels, 13);
}

TEST(Typography, OfPageTitles) {
    Stage stage;
    stage.showPage(Page::alerts);
    // The first text of that name is the sidebar's row; the heading is the last.
    std::optional<Letters> heading;
    const std::function<void(const QQuickItem&)> walk = [&](const QQuickItem& item) {
        if (item.property("text").toString() == QStringLiteral("Alertes") &&
            item.property("size").toInt() == 26) {
            heading = lettersOf(item, QStringLiteral("Alertes"));
        }
        for (const QQuickItem* child : item.childItems()) {
            walk(*child);
        }
    };
    walk(*stage.window().contentItem());
    ASSERT_TRUE(heading);
    EXPECT_EQ(*heading, (Letters{26, bold, ink(PaletteColor::text)}));
    expectLetters(stage, {{"Sois prévenu avant que ton Mac ne souffre", 13, regular, PaletteColor::muted}});
}

TEST(Typography, OfFanCards) {
    Stage stage;
    stage.start();
    stage.monitor().setSetting(0, inMode(FanModeKind::constant));
    stage.monitor().setSetting(1, inMode(FanModeKind::sensor));
    stage.showPage(Page::fans);
    stage.world.smc.setNumber("F0Ac", "fpe2", 987);
    stage.poll();
    expectLetters(stage, {{"Ventilateur gauche", 14, semibold},
                          {"tr/min", 12, regular, PaletteColor::muted},
                          {"987", 30, bold},
                          {"Mode", 12, regular, PaletteColor::muted},
                          {"Vitesse demandée : …", 13},
                          {"Capteur", 13},
                          {"La vitesse augmente à partir de …", 13},
                          {"Vitesse maximale à …", 13},
                          {"Auto", 13, regular, PaletteColor::secondaryText},
                          {"Vitesse fixe", 13, semibold, PaletteColor::onAccent}});
}

TEST(Typography, OfEmptyPages) {
    Stage stage;
    stage.world.smc.setNumber("FNum", "ui8 ", 0);
    stage.showPage(Page::dashboard);
    expectLetters(stage, {{"Ce Mac n'a pas de ventilateur à piloter…", 13, regular, PaletteColor::muted}});
    stage.monitor().setSelectedPage(Page::fans);
    expectLetters(stage, {{"Aucun ventilateur détecté sur ce Mac.", 13, regular, PaletteColor::muted}});
    stage.monitor().setSelectedPage(Page::apps);
    expectLetters(stage, {{"Aucune application ne sollicite beaucoup le processeur.", 13, regular,
                           PaletteColor::muted}});
}

TEST(Typography, OfApplications) {
    Stage stage;
    stage.showPage(Page::apps);
    AppLoad app;
    app.id = QStringLiteral("/Applications/Atelier.app");
    app.name = QStringLiteral("Atelier");
    app.cpu = 36.5;
    app.memoryMB = 120;
    stage.setApps({app});
    expectLetters(
        stage, {{"Désactive un interrupteur pour fermer l'application.…", 12, regular, PaletteColor::muted},
                {"Atelier utilise 37 % du processeur.", 14},
                {"Atelier", 14},
                {"37 %", 14},
                {"120 Mo", 11, regular, PaletteColor::muted},
                {"Protégé", 12, regular, PaletteColor::muted}});
}

TEST(Typography, OfPresets) {
    Stage stage;
    stage.start();
    stage.monitor().apply(Preset::balanced);
    stage.showPage(Page::presets);
    expectLetters(stage, {{"Silencieux", 15, semibold},
                          {"Laisse macOS gérer les ventilateurs…", 13, regular, PaletteColor::muted},
                          {"Actif", 13, semibold, PaletteColor::accent},
                          {"Appliquer", 13}});
}

TEST(Typography, OfAlertsAndSettings) {
    Stage stage;
    stage.showPage(Page::alerts);
    expectLetters(stage, {{"Une notification et un son se déclenchent…", 12, regular, PaletteColor::muted},
                          {"Seuil d'alerte : …", 13}});
    stage.monitor().setSelectedPage(Page::settings);
    expectLetters(stage, {{"Fenwhirl 0.1", 13, regular, PaletteColor::muted},
                          {"Ouvrir Fenwhirl au démarrage du Mac", 14},
                          {"Apparence", 14},
                          {"Langue", 14},
                          {"« Automatique » suit la langue de ton Mac.", 12, regular, PaletteColor::muted},
                          {"Choisis à partir de quelle température…", 12, regular, PaletteColor::muted},
                          {"Contrôle des ventilateurs", 14},
                          {"Rapport de diagnostic", 14},
                          {"Crée un petit fichier texte…", 13, regular, PaletteColor::muted}});
}

TEST(Typography, OfTheIntroduction) {
    Stage stage;
    stage.onboarded = false;
    stage.show();
    expectLetters(stage, {{"Bienvenue dans Fenwhirl", 22, bold},
                          {"Fenwhirl surveille la température…", 14, regular, PaletteColor::secondaryText},
                          {"Suivant", 14, semibold, PaletteColor::onAccent}});
    stage.click(QStringLiteral("Suivant"));
    expectLetters(stage, {{"Contrôle activé", 13}});
}

TEST(Typography, OfThePanel) {
    Stage stage;
    stage.world.setCelsius(63);
    stage.start();
    stage.monitor().apply(Preset::game);
    stage.show(menuPanelFile());
    expectLetters(stage, {{"Fenwhirl", 15, semibold},
                          {"Tout est normal", 12},
                          {"Processeur (proximité)", 11, regular, PaletteColor::muted},
                          {"63 °C", 18, bold},
                          {"Silencieux", 12},
                          {"Jeu", 12, semibold, PaletteColor::onAccent},
                          {"Ventilateur gauche", 13},
                          {"tr/min", 12, regular, PaletteColor::muted},
                          {"Ouvrir Fenwhirl", 14, semibold, PaletteColor::onAccent},
                          {"Quitter", 14}});
}

TEST(Typography, OfBanners) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.start();
    stage.monitor().apply(Preset::game);
    stage.show();
    stage.poll();
    expectLetters(stage, {{"Activer le contrôle des ventilateurs", 14, semibold},
                          {"Pour changer la vitesse, Fenwhirl a besoin…", 13, regular, PaletteColor::muted},
                          {"Activer", 13, semibold, PaletteColor::onAccent}});
}

// Every text of a window with its size in pixels, by the item that draws it.
QHash<const QQuickItem*, int> pixelSizes(const QQuickItem& item) {
    QHash<const QQuickItem*, int> sizes;
    if (item.inherits("QQuickText")) {
        sizes.insert(&item, item.property("font").value<QFont>().pixelSize());
    }
    for (const QQuickItem* child : item.childItems()) {
        sizes.insert(pixelSizes(*child));
    }
    return sizes;
}

void expectTextsToGrow(Stage& stage, int atLeast) {
    stage.setTextScale(1);
    static_cast<void>(stage.window().grabWindow()); // forces a layout
    const QHash<const QQuickItem*, int> designed = pixelSizes(*stage.window().contentItem());
    stage.setTextScale(1.5);
    static_cast<void>(stage.window().grabWindow());
    const QHash<const QQuickItem*, int> grown = pixelSizes(*stage.window().contentItem());
    int compared = 0;
    for (const auto [item, pixels] : designed.asKeyValueRange()) {
        if (!grown.contains(item)) { // a row that is no longer in view
            continue;
        }
        ++compared;
        EXPECT_EQ(grown[item], std::lround(pixels * 1.5)) << item->property("text").toString().toStdString();
    }
    EXPECT_GE(compared, atLeast);
}

TEST(Typography, OfLargerTextsOnEveryPage) {
    Stage stage;
    stage.world.helper.installed = false;
    stage.start();
    stage.monitor().setSetting(0, inMode(FanModeKind::constant));
    stage.monitor().setSetting(1, inMode(FanModeKind::sensor));
    stage.show();
    AppLoad app;
    app.id = QStringLiteral("/Applications/Atelier.app");
    app.name = QStringLiteral("Atelier");
    app.cpu = 36.5;
    stage.setApps({app});
    for (int page = 0; page < stage.models().pages()->rowCount(); ++page) {
        stage.models().pages()->setSelectedIndex(page);
        SCOPED_TRACE(stage.models().pages()->selectedName().toStdString());
        expectTextsToGrow(stage, 14);
    }
}

TEST(Typography, OfLargerTextsInThePanelAndTheIntroduction) {
    Stage panel;
    panel.show(menuPanelFile());
    expectTextsToGrow(panel, 20);
    Stage introduction;
    introduction.onboarded = false;
    introduction.show();
    expectTextsToGrow(introduction, 20);
}

} // namespace

} // namespace Fenwhirl
