// A control that shows only a symbol tells in a tooltip what it is for.

#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QQuickItem>
#include <QTest>

#include <algorithm>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

QList<QQuickItem*> visibleItemsBelow(const QQuickItem& item) {
    QList<QQuickItem*> found;
    for (QQuickItem* const child : item.childItems()) {
        if (child->isVisible() && child->opacity() > 0) {
            found.append(child);
            found.append(visibleItemsBelow(*child));
        }
    }
    return found;
}

QStringList textsBelow(const QQuickItem& item) {
    QStringList texts;
    for (const QQuickItem* part : visibleItemsBelow(item)) {
        if (part->inherits("QQuickText")) {
            texts.append(part->property("text").toString());
        }
    }
    texts.removeAll(QString());
    return texts;
}

bool hasASymbolBelow(const QQuickItem& item) {
    const QList<QQuickItem*> parts = visibleItemsBelow(item);
    return std::any_of(parts.begin(), parts.end(),
                       [](const QQuickItem* part) { return part->inherits("Fenwhirl::Symbol"); });
}

// Whether a symbol and no text belongs to an area of the pointer: below it, or beside it in the same control.
bool isOfASymbol(const QQuickItem& area) {
    constexpr int levels = 3;
    const QQuickItem* part = &area;
    for (int i = 0; i < levels && part != nullptr && textsBelow(*part).isEmpty(); ++i) {
        if (hasASymbolBelow(*part)) {
            return true;
        }
        part = part->parentItem();
    }
    return false;
}

// What the pointer can press that shows a symbol and no text, from above.
QList<QQuickItem*> symbolControls(const QQuickWindow& window) {
    QList<QQuickItem*> found;
    for (QQuickItem* const item : visibleItemsBelow(*window.contentItem())) {
        if (item->inherits("QQuickMouseArea") && item->isEnabled() && isOfASymbol(*item)) {
            found.append(item);
        }
    }
    return found;
}

QStringList openTooltips(const QQuickWindow& window) {
    QStringList texts;
    for (const QQuickItem* item : visibleItemsBelow(*window.contentItem())) {
        if (item->inherits("QQuickPopupItem")) {
            texts.append(textsBelow(*item));
        }
    }
    return texts;
}

// Lets the pointer rest on each of these controls, and returns the tooltips.
QStringList tooltipsOf(QQuickWindow& window) {
    QStringList told;
    for (const QQuickItem* control : symbolControls(window)) {
        QTest::mouseMove(&window, {1, 1});
        EXPECT_TRUE(waitUntil([&] { return openTooltips(window).isEmpty(); }));
        const QPointF middle = control->mapToScene({control->width() / 2, control->height() / 2});
        QTest::mouseMove(&window, middle.toPoint());
        EXPECT_TRUE(waitUntil([&] { return !openTooltips(window).isEmpty(); }))
            << "at " << middle.x() << ", " << middle.y();
        told.append(openTooltips(window));
    }
    return told;
}

TEST(Tooltips, SayWhatTheHalvesOfASteppersChange) {
    Stage stage;
    stage.start();
    FanSetting setting;
    setting.mode = FanModeKind::sensor;
    stage.monitor().setSetting(0, setting);
    stage.showPage(Page::fans);
    const QString start = QStringLiteral("La vitesse augmente à partir de");
    const QString end = QStringLiteral("Vitesse maximale à");
    EXPECT_EQ(tooltipsOf(stage.window()), (QStringList{start, start, end, end}));
}

TEST(Tooltips, SayWhatTheCrossOfAMessageDoes) {
    Stage stage;
    stage.world.helper.succeeds = false;
    stage.showPage(Page::presets);
    stage.monitor().apply(Preset::max);
    stage.poll();
    EXPECT_EQ(tooltipsOf(stage.window()), QStringList{QStringLiteral("Fermer")});
}

TEST(Tooltips, SayWhatTheSymbolOfAModeInThePanelSwitchesTo) {
    Stage stage;
    stage.start();
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.show(menuPanelFile());
    EXPECT_EQ(tooltipsOf(stage.window()), (QStringList{QStringLiteral("Auto"), QStringLiteral("Auto")}));
}

TEST(Tooltips, StayWithinThePanelBesideItsShadow) {
    Stage stage;
    stage.start();
    stage.monitor().setLanguage(AppLanguage::de); // "Automatik" is wider than the space beside the symbol
    stage.monitor().apply(Preset::max);
    stage.poll();
    stage.show(menuPanelFile());
    stage.window().setProperty("shadowed", true);
    ASSERT_EQ(tooltipsOf(stage.window()).value(0), QStringLiteral("Automatik"));
    QList<QQuickItem*> items = visibleItemsBelow(*stage.window().contentItem());
    erase_if(items, [](const QQuickItem* item) { return !item->inherits("QQuickPopupItem"); });
    ASSERT_EQ(items.size(), 1);
    const QRectF place = items.first()->mapRectToScene(items.first()->boundingRect());
    const QRectF panel = stage.window().property("panelArea").toRectF();
    EXPECT_GE(place.left(), panel.left() + 6);
    EXPECT_LE(place.right(), panel.right() - 6);
}

// On every page, in the panel too: nothing that shows only a symbol is without a tooltip.
TEST(Tooltips, AreNowhereMissing) {
    Stage stage;
    stage.start();
    stage.show();
    for (const Page page : allPages) {
        stage.monitor().setSelectedPage(page);
        EXPECT_EQ(tooltipsOf(stage.window()).size(), symbolControls(stage.window()).size()) << rawValue(page);
    }
}

} // namespace

} // namespace Fenwhirl
