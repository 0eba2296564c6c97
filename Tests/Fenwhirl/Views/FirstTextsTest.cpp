#include "Fenwhirl/Views/FirstTexts.h"

#include "Stage.h"

#include <QQuickItem>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

namespace Fenwhirl {

static void PrintTo(const FirstTextStyle& style, std::ostream* out) {
    *out << style.pixelSize << " px, weight " << style.weight;
}

namespace {

void collectStyles(const QQuickItem& item, std::vector<FirstTextStyle>& into) {
    if (!item.isVisible()) {
        return;
    }
    if (item.inherits("QQuickText") && !item.property("text").toString().isEmpty()) {
        const QFont font = item.property("font").value<QFont>();
        const FirstTextStyle style{.pixelSize = font.pixelSize(), .weight = font.weight()};
        if (std::ranges::find(into, style) == into.end()) {
            into.push_back(style);
        }
    }
    for (const QQuickItem* child : item.childItems()) {
        collectStyles(*child, into);
    }
}

} // namespace

TEST(FirstTexts, AreInTheFontsThatWerePrepared) {
    Stage stage;
    stage.world.preferences.setBoolean(QStringLiteral("didOnboard"),
                                       true); // the introduction comes later in any case
    stage.world.make();
    stage.adopt(); // without a poll, like the first picture
    stage.windowSize = {1040, 680};
    stage.show();

    // The chart draws the numbers beside its lines itself.
    std::vector styles = {FirstTextStyle{.pixelSize = 11, .weight = QFont::Normal}};
    collectStyles(*stage.window().contentItem(), styles);
    EXPECT_THAT(styles, testing::UnorderedElementsAreArray(firstTextStyles));
}

} // namespace Fenwhirl
