#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

const char* const names[] = {"bell",
                             "checkmark",
                             "chevron.down",
                             "chevron.up.chevron.down",
                             "cpu",
                             "exclamationmark.triangle",
                             "fan",
                             "fan.16",
                             "fan.18",
                             "fan.22",
                             "fan.24",
                             "fan.fill",
                             "flame",
                             "gearshape",
                             "gearshape.2",
                             "minus",
                             "plus",
                             "slider.horizontal.3",
                             "square.grid.2x2",
                             "thermometer.medium",
                             "xmark"};

TEST(SymbolShapes, EveryDrawingIsThereAndStaysOnItsGrid) {
    for (const char* name : names) {
        const QString symbol = QString::fromLatin1(name);
        const auto& shapes = symbolShapes(symbol);
        ASSERT_FALSE(shapes.empty()) << name;
        for (const SymbolShape& shape : shapes) {
            const double half = shape.strokeWidth / 2.0;
            const QRectF inked = shape.path.boundingRect().adjusted(-half, -half, half, half);
            EXPECT_TRUE(QRectF(0, 0, 24, 24).contains(inked)) << name;
            EXPECT_FALSE(shape.path.isEmpty()) << name;
        }
    }
}

TEST(SymbolShapes, TheOutlineFanIsAStrokeWithAFilledHub) {
    const QString symbol = QStringLiteral("fan");
    const auto& shapes = symbolShapes(symbol);
    ASSERT_EQ(shapes.size(), 2U);
    EXPECT_DOUBLE_EQ(shapes[0].strokeWidth, 1.75);
    EXPECT_DOUBLE_EQ(shapes[1].strokeWidth, 0.0);
    EXPECT_TRUE(shapes[1].path.contains(QPointF(12, 12)));
}

TEST(SymbolShapes, TheFanIsDrawnForTheSizesOfTraysAndTheirDoubles) {
    const auto drawing = [](double pixels) { return drawingForPixels(QStringLiteral("fan"), pixels); };
    for (const int size : {16, 18, 22, 24}) {
        EXPECT_EQ(drawing(size), QStringLiteral("fan.%1").arg(size));
        EXPECT_EQ(drawing(2 * size), QStringLiteral("fan.%1").arg(size)) << "twice";
    }
    EXPECT_EQ(drawing(20), QStringLiteral("fan.18"));
    EXPECT_EQ(drawing(42), QStringLiteral("fan"));
    EXPECT_EQ(drawing(11), QStringLiteral("fan.fill")) << "no room for an outline";
    EXPECT_EQ(drawing(-1), QStringLiteral("fan.fill"));
    EXPECT_EQ(drawingForPixels(QStringLiteral("bell"), 16), QStringLiteral("bell"));
}

// Each blade is an outline around a visible background, and its outer edge ends at a pixel boundary.
TEST(SymbolShapes, TheSmallFansAreOutlinesOnWholePixels) {
    for (const int size : {16, 18, 22, 24}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawSymbol(painter, QStringLiteral("fan"), QRectF(0, 0, size, size), Qt::black);
        painter.end();
        int inside = 255;
        int edge = 0;
        for (int y = 1; y < size / 2; ++y) {
            inside = std::min(inside, image.pixelColor(size / 2 - 2, y).alpha());
        }
        for (int x = 0; x < size; ++x) {
            edge = std::max(edge, image.pixelColor(x, 1).alpha());
        }
        EXPECT_LT(inside, 40) << size;
        EXPECT_GT(edge, 200) << size;
        for (int x = 0; x < size; ++x) {
            EXPECT_EQ(image.pixelColor(x, 0).alpha(), 0) << size;
        }
        const QColor hub = image.pixelColor(size / 2, size / 2);
        EXPECT_GT(hub.alpha(), 128) << size;
    }
}

TEST(SymbolShapes, ABoldSymbolHasMoreInk) {
    const auto ink = [](SymbolWeight weight) {
        QImage image(18, 18, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawSymbol(painter, QStringLiteral("fan"), QRectF(0, 0, 18, 18), Qt::black, weight);
        int sum = 0;
        for (int i = 0; i < 18 * 18; ++i) {
            sum += image.pixelColor(i % 18, i / 18).alpha();
        }
        return sum;
    };
    EXPECT_GT(ink(SymbolWeight::bold), ink(SymbolWeight::regular) * 1.1);
}

TEST(SymbolShapes, AnUnknownNameHasNoShapes) {
    EXPECT_TRUE(symbolShapes(QStringLiteral("umbrella")).empty());
    EXPECT_TRUE(symbolShapes(QString()).empty());
    EXPECT_TRUE(symbolShapes(QStringLiteral("../Symbols/fan")).size() <= 2U);
}

TEST(SymbolShapes, DrawingFillsTheSquareInTheMiddleWithTheColor) {
    QImage image(48, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSymbol(painter, QStringLiteral("plus"), QRectF(0, 0, 48, 24), Qt::red);
    painter.end();
    EXPECT_EQ(image.pixelColor(24, 12), QColor(Qt::red))
        << "the crossing is in the middle of the wider rectangle";
    EXPECT_EQ(image.pixelColor(2, 12).alpha(), 0);
}

TEST(SymbolShapes, TheHubOfTheSolidFanIsAHole) {
    QImage image(96, 96, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSymbol(painter, QStringLiteral("fan.fill"), QRectF(0, 0, 96, 96), Qt::white);
    painter.end();
    EXPECT_EQ(image.pixelColor(48, 48).alpha(), 0);
    EXPECT_EQ(image.pixelColor(48, 20).alpha(), 255);
}

} // namespace

} // namespace Fenwhirl
