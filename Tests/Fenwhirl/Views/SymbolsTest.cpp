// The symbols of every page: their order, size and colour.

#include "Fenwhirl/Views/Components/Palette.h"
#include "Fenwhirl/Views/Components/Symbol.h"
#include "Stage.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

struct Drawn {
    QString name;
    double size = 0;
    QRgb color = 0;

    bool operator==(const Drawn&) const = default;
};

void PrintTo(const Drawn& drawn, std::ostream* out) {
    *out << drawn.name.toStdString() << " " << drawn.size << " "
         << QColor::fromRgba(drawn.color).name(QColor::HexArgb).toStdString();
}

void collect(const QQuickItem& item, QList<Drawn>& into) {
    if (!item.isVisible()) {
        return;
    }
    if (const auto* symbol = qobject_cast<const Symbol*>(&item)) {
        into.append({symbol->name(), symbol->width(), symbol->color().rgba()});
    }
    for (const QQuickItem* child : item.childItems()) {
        collect(*child, into);
    }
}

QList<Drawn> symbolsOf(Stage& stage) {
    QList<Drawn> symbols;
    collect(*stage.window().contentItem(), symbols);
    return symbols;
}

Drawn symbol(const char* name, double size, PaletteColor color) {
    return {QString::fromLatin1(name), size, palette(true)[static_cast<std::size_t>(color)].rgba()};
}

// The symbols of the page itself, without the sidebar's emblem and its seven rows.
QList<Drawn> symbolsOfPage(Stage& stage, Page page) {
    stage.monitor().setSelectedPage(page);
    return symbolsOf(stage).mid(8);
}

TEST(Symbols, OfTheSidebar) {
    Stage stage;
    stage.showPage(Page::sensors);
    EXPECT_EQ(symbolsOf(stage), (QList<Drawn>{symbol("fan", 18, PaletteColor::onAccent),
                                              symbol("square.grid.2x2", 18, PaletteColor::secondaryText),
                                              symbol("fan", 18, PaletteColor::secondaryText),
                                              symbol("thermometer.medium", 18, PaletteColor::accentSoft),
                                              symbol("cpu", 18, PaletteColor::secondaryText),
                                              symbol("slider.horizontal.3", 18, PaletteColor::secondaryText),
                                              symbol("bell", 18, PaletteColor::secondaryText),
                                              symbol("gearshape", 18, PaletteColor::secondaryText)}));
}

TEST(Symbols, InFrontOfTextsGrowHalfAsMuchAsThese) {
    const auto sizes = [](Stage& stage) {
        QList<double> found;
        for (const Drawn& drawn : symbolsOf(stage)) {
            found.append(drawn.size);
        }
        return found;
    };
    Stage window;
    window.showPage(Page::sensors);
    window.setTextScale(2);
    EXPECT_EQ(sizes(window).mid(1), QList<double>(7, 27)); // after the emblem
    window.setTextScale(1);
    EXPECT_EQ(sizes(window).mid(1), QList<double>(7, 18));
    Stage panel;
    panel.show(menuPanelFile());
    panel.setTextScale(1.5);
    EXPECT_EQ(sizes(panel), QList<double>(3, 23)); // the fan in the header, and the mode of each fan
}

TEST(Symbols, OfTheDashboardAndItsError) {
    Stage stage;
    stage.world.loginItemWorks = false;
    stage.show();
    EXPECT_EQ(symbolsOfPage(stage, Page::dashboard),
              (QList<Drawn>{symbol("chevron.down", 11, PaletteColor::muted)}));
    stage.monitor().setLaunchAtLogin(true); // provokes an error message
    EXPECT_EQ(symbolsOfPage(stage, Page::dashboard),
              (QList<Drawn>{symbol("exclamationmark.triangle", 20, PaletteColor::hot),
                            symbol("xmark", 13, PaletteColor::muted),
                            symbol("chevron.down", 11, PaletteColor::muted)}));
}

TEST(Symbols, OfAFanThatFollowsASensor) {
    Stage stage;
    FanSetting setting;
    setting.mode = FanModeKind::sensor;
    stage.start();
    stage.monitor().setSetting(0, setting);
    stage.show();
    EXPECT_EQ(symbolsOfPage(stage, Page::fans),
              (QList<Drawn>{symbol("chevron.up.chevron.down", 13, PaletteColor::muted),
                            symbol("minus", 13, PaletteColor::secondaryText),
                            symbol("plus", 13, PaletteColor::secondaryText),
                            symbol("minus", 13, PaletteColor::secondaryText),
                            symbol("plus", 13, PaletteColor::secondaryText)}));
}

TEST(Symbols, OfApplications) {
    Stage stage;
    stage.show();
    stage.setApps({runningApp(QStringLiteral("Blender"), 36.5, 71)});
    EXPECT_EQ(symbolsOfPage(stage, Page::apps),
              (QList<Drawn>{symbol("flame", 18, PaletteColor::hot),
                            symbol("gearshape.2", 18, PaletteColor::muted)}));
}

TEST(Symbols, OfTheIntroduction) {
    Stage stage;
    stage.onboarded = false;
    stage.show();
    EXPECT_EQ(symbolsOf(stage).mid(9),
              (QList<Drawn>{symbol("fan", 42, PaletteColor::onAccent),
                            symbol("chevron.up.chevron.down", 13, PaletteColor::muted)}));
    stage.click(QStringLiteral("Suivant"));
    EXPECT_EQ(symbolsOf(stage).mid(9), (QList<Drawn>{symbol("fan", 42, PaletteColor::onAccent),
                                                     symbol("checkmark", 15, PaletteColor::good)}));
}

TEST(Symbols, OfThePanel) {
    Stage stage;
    stage.show(menuPanelFile());
    EXPECT_EQ(symbolsOf(stage), (QList<Drawn>{symbol("fan", 18, PaletteColor::accent),
                                              symbol("mode.auto", 18, PaletteColor::muted),
                                              symbol("mode.auto", 18, PaletteColor::muted)}));
}

TEST(Symbols, OfTheModesInThePanelSayWhetherTheyAreInForce) {
    Stage stage;
    stage.start();
    FanSetting setting;
    setting.mode = FanModeKind::constant;
    stage.monitor().setSetting(0, setting);
    setting.mode = FanModeKind::sensor;
    stage.monitor().setSetting(1, setting);
    stage.show(menuPanelFile());
    const auto modes = [&stage] { return symbolsOf(stage).mid(1, 2); };
    const auto both = [](PaletteColor color) {
        return QList<Drawn>{symbol("mode.fixed", 18, color), symbol("mode.curve", 18, color)};
    };
    EXPECT_EQ(modes(), both(PaletteColor::muted)); // chosen, but not yet in force
    stage.poll();
    EXPECT_EQ(modes(), both(PaletteColor::accent));
    stage.world.setCelsius(93);
    stage.poll();
    EXPECT_EQ(modes(), both(PaletteColor::muted)); // handed back
}

} // namespace

} // namespace Fenwhirl
