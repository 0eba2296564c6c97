#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

using Fenwhirl::drawSymbol;
using Fenwhirl::SymbolShape;
using Fenwhirl::symbolShapes;

namespace {

const char* const names[] = {"bell",
                             "checkmark",
                             "chevron.down",
                             "chevron.up.chevron.down",
                             "cpu",
                             "exclamationmark.triangle",
                             "fan",
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
