// A question that is shown in a window of its own.

#include "FittingWindow.h"
#include "Stage.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

void ask(Stage& stage) {
    stage.show(alertWindowFile(),
               {{QStringLiteral("heading"), QStringLiteral("Une nouvelle version est disponible")},
                {QStringLiteral("message"),
                 QStringLiteral("La version 9.9 de Fenwhirl est disponible. Elle est gratuite pour toi. Tu "
                                "as la version 0.1.")},
                {QStringLiteral("acceptText"), QStringLiteral("Télécharger")},
                {QStringLiteral("laterText"), QStringLiteral("Plus tard")}});
}

// The lower edge of the last button, in window coordinates.
int endOfAlert(Stage& stage) {
    static_cast<void>(stage.window().grabWindow());
    QAccessibleInterface* last = stage.find(QStringLiteral("Plus tard"), QAccessible::Button);
    return last == nullptr ? -1 : last->rect().bottom() + 1 - stage.window().y();
}

TEST(AlertWindow, IsAsHighAsItsContentAndFollowsTheSizeOfTexts) {
    Stage stage;
    ask(stage);
    const SizeLimitsCheck limits(stage.window());
    int before = 0;
    for (const double scale : {1.0, 1.5, 2.0}) {
        stage.setTextScale(scale);
        ASSERT_TRUE(waitUntil([&] { return endOfAlert(stage) + 20 == stage.window().height(); }));
        expectFixedSize(stage.window(), QSize(static_cast<int>(300 * scale), stage.window().height()));
        EXPECT_GT(stage.window().height(), before);
        before = stage.window().height();
    }
    stage.setTextScale(1);
    ASSERT_TRUE(waitUntil([&] { return endOfAlert(stage) + 20 == stage.window().height(); }));
    expectFixedSize(stage.window(), QSize(300, stage.window().height()));
    EXPECT_LT(stage.window().height(), before);
}

TEST(AlertWindow, ReturnAcceptsAndEscapeMeansLater) {
    for (const bool accepts : {true, false}) {
        Stage stage;
        ask(stage);
        QSignalSpy accepted(&stage.window(), SIGNAL(accepted()));
        stage.press(accepts ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_EQ(accepted.size(), accepts ? 1 : 0);
        EXPECT_FALSE(stage.window().isVisible());
    }
}

TEST(AlertWindow, IsReadAsAModalDialog) {
    Stage stage;
    ask(stage);
    const QAccessibleInterface* dialog = QAccessible::queryAccessibleInterface(&stage.window());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->role(), QAccessible::Dialog);
    EXPECT_EQ(dialog->text(QAccessible::Name), QStringLiteral("Une nouvelle version est disponible"));
    EXPECT_TRUE(dialog->state().modal);
    EXPECT_EQ(stage.find(QStringLiteral("Une nouvelle version est disponible"), QAccessible::Dialog), nullptr)
        << "screen readers take a dialog inside for another window";
    EXPECT_TRUE(dialog->text(QAccessible::Description).startsWith(QStringLiteral("La version 9.9")));
    EXPECT_NE(stage.find(QStringLiteral("Plus tard"), QAccessible::Button), nullptr);
}

} // namespace

} // namespace Fenwhirl
