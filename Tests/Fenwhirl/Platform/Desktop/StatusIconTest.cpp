#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

void drawSquare(QPainter& painter, const QRectF& bounds, const QColor& color) {
    painter.fillRect(bounds, color);
}

// The number of pixels in this area that have the icon's own colour.
int ink(const QImage& image, const QRect& place) {
    int points = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            points += image.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
        }
    }
    return points;
}

QImage icon(const QString& text, int height, StatusIconShape shape) {
    return statusIcon(drawSquare, text, height, true, shape);
}

TEST(StatusIcon, HasTheTemperatureBesideTheSymbolInASquareToo) {
    for (const char* text : {"5°", "63°", "104°"}) {
        const QImage image = icon(QString::fromUtf8(text), 44, StatusIconShape::square);
        ASSERT_EQ(image.size(), QSize(44, 44));
        EXPECT_EQ(ink(image, {0, 0, 22, 44}), 22 * 22) << "the symbol, untouched";
        EXPECT_GT(ink(image, {24, 11, 20, 22}), 40) << text;
        EXPECT_EQ(ink(image, {43, 0, 1, 44}), 0) << text << " is cut";
        // The text is as high as the symbol, and no higher.
        EXPECT_EQ(ink(image, {24, 0, 20, 10}) + ink(image, {24, 34, 20, 10}), 0) << text;
    }
}

TEST(StatusIcon, IsAsWideAsItsTextWhereThereIsRoomAndOfOneWidthForAllDigits) {
    const QFont usual = QGuiApplication::font();
    QGuiApplication::setFont(QFont(QStringLiteral("Inter"))); // its digits differ in width
    const QImage image = icon(QStringLiteral("63°"), 44, StatusIconShape::wide);
    EXPECT_EQ(image.height(), 44);
    EXPECT_EQ(ink(image, {6, 6, 32, 32}), 32 * 32) << "the symbol in its usual size";
    EXPECT_EQ(ink(image, {38, 0, 8, 44}), 0) << "what parts them";
    EXPECT_GT(ink(image, {46, 6, image.width() - 46, 32}), 40);
    EXPECT_EQ(ink(image, {image.width() - 1, 0, 1, 44}), 0);
    EXPECT_EQ(icon(QStringLiteral("11°"), 44, StatusIconShape::wide).width(), image.width());
    EXPECT_GT(icon(QStringLiteral("104°"), 44, StatusIconShape::wide).width(), image.width());
    QGuiApplication::setFont(usual);
}

TEST(StatusIcon, WithoutATemperatureIsTheSymbolInTheMiddle) {
    for (const StatusIconShape shape : {StatusIconShape::square, StatusIconShape::wide}) {
        const QImage image = icon({}, 22, shape);
        ASSERT_EQ(image.size(), QSize(22, 22));
        EXPECT_EQ(ink(image, {3, 3, 16, 16}), 16 * 16);
        EXPECT_EQ(ink(image, {0, 0, 22, 22}), 16 * 16);
    }
}

TEST(StatusIcon, DrawsTheSymbolOnWholePixelsInEverySizeOfATray) {
    for (const auto& [height, side] :
         {std::pair(16, 12), {18, 14}, {22, 16}, {24, 18}, {32, 24}, {44, 32}, {48, 36}}) {
        QList<QRectF> places;
        const auto note = [&places](QPainter&, const QRectF& bounds, const QColor&) {
            places.append(bounds);
        };
        static_cast<void>(statusIcon(note, {}, height, true, StatusIconShape::square));
        const double margin = (height - side) / 2.0;
        EXPECT_EQ(places.value(0), QRectF(margin, margin, side, side)) << height;
    }
}

TEST(StatusIcon, HasAnEdgeThatShowsItOnABarOfItsOwnColour) {
    const QImage image = icon({}, 22, StatusIconShape::square);
    const QColor edge = image.pixelColor(2, 11);
    EXPECT_EQ(edge.lightness(), 0);
    EXPECT_GT(edge.alpha(), 128);
    EXPECT_EQ(image.pixelColor(0, 11).alpha(), 0) << "a thin one";
}

TEST(StatusIcon, AsATemplateIsBlackWithAMarginAndNothingElse) {
    const QImage image = templateSymbol(drawSquare, 2);
    EXPECT_EQ(image.size(), QSize(36, 36));
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(18, 18));
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
    EXPECT_EQ(image.pixelColor(18, 18), QColor(Qt::black));
}

TEST(StatusIcon, IsWhiteOnDarkAndDarkOnLight) {
    const auto middle = [](bool onDark) {
        return statusIcon(drawSquare, {}, 22, onDark, StatusIconShape::square).pixelColor(11, 11);
    };
    EXPECT_EQ(middle(true), QColor(Qt::white));
    EXPECT_LT(middle(false).lightness(), 64);
}

} // namespace

} // namespace Fenwhirl
