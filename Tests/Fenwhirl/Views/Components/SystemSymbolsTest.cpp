#include "Fenwhirl/Views/Components/SystemSymbols.h"

#include <QColor>
#include <QPainter>

#include <gtest/gtest.h>
#include <vector>

namespace Fenwhirl {

using namespace Fenwhirl;

namespace {

// A system that has one symbol, a black bar, and a record of the requests for it.
class SystemSymbolsTest : public testing::Test {
protected:
    struct Question {
        QString name;
        double fontPixels;
        bool bold;
    };

    std::vector<Question> asked;
    QSize barSize = QSize(8, 4);
    double barRatio = 1.0;

    SystemSymbolsTest() {
        setSystemSymbolSource([this](const QString& name, double fontPixels, bool bold) {
            asked.push_back({name, fontPixels, bold});
            if (name != QStringLiteral("bar")) {
                return QImage();
            }
            QImage bar(barSize, QImage::Format_ARGB32);
            bar.fill(Qt::black);
            bar.setDevicePixelRatio(barRatio);
            return bar;
        });
    }

    ~SystemSymbolsTest() override { setSystemSymbolSource({}); }

    // Draws the symbol into a box of 20 points at two pixels per point; returns whether anything was drawn.
    bool draw(const QString& name, QImage& image) {
        image = QImage(40, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(2.0, 2.0);
        return drawSystemSymbol(painter, name, QRectF(0, 0, 20, 20), QColor(255, 0, 0));
    }

    static QRect inked(const QImage& image) {
        QRect box;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).alpha() > 127) {
                    box |= QRect(x, y, 1, 1);
                }
            }
        }
        return box;
    }
};

TEST_F(SystemSymbolsTest, AreDrawnInTheirOwnSizeCentredAndInTheColour) {
    QImage image;
    ASSERT_TRUE(draw(QStringLiteral("bar"), image));
    EXPECT_EQ(inked(image), QRect(16, 18, 8, 4));
    EXPECT_EQ(image.pixelColor(20, 20), QColor(255, 0, 0));
}

TEST_F(SystemSymbolsTest, AreAskedForInThePixelsOfTheDevice) {
    QImage image;
    ASSERT_TRUE(draw(QStringLiteral("bar"), image));
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked.front().name, QStringLiteral("bar"));
    EXPECT_DOUBLE_EQ(asked.front().fontPixels, 40.0 * 0.8);
}

TEST_F(SystemSymbolsTest, WithTwoPixelsForOneAreNoLarger) {
    barSize = QSize(16, 8);
    barRatio = 2.0;
    QImage image;
    ASSERT_TRUE(draw(QStringLiteral("bar"), image));
    EXPECT_EQ(inked(image), QRect(16, 18, 8, 4));
}

TEST_F(SystemSymbolsTest, LargerThanTheirBoxAreMadeSmallerInProportion) {
    barSize = QSize(80, 20);
    QImage image;
    ASSERT_TRUE(draw(QStringLiteral("bar"), image));
    EXPECT_EQ(inked(image), QRect(0, 15, 40, 10));
}

TEST_F(SystemSymbolsTest, AreAskedForOnceForEachSize) {
    QImage image;
    EXPECT_TRUE(draw(QStringLiteral("bar"), image));
    EXPECT_TRUE(draw(QStringLiteral("bar"), image));
    EXPECT_FALSE(draw(QStringLiteral("unknown"), image));
    EXPECT_FALSE(draw(QStringLiteral("unknown"), image));
    EXPECT_EQ(asked.size(), 2U);
}

TEST_F(SystemSymbolsTest, AreAskedForInTheirWeight) {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (const SymbolWeight weight : {SymbolWeight::bold, SymbolWeight::regular}) {
        EXPECT_TRUE(drawSystemSymbol(painter, QStringLiteral("bar"), QRectF(0, 0, 20, 20), Qt::red, weight));
    }
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_TRUE(asked[0].bold);
    EXPECT_FALSE(asked[1].bold);
}

TEST_F(SystemSymbolsTest, UnknownOnesLeaveThePlaceToOurDrawing) {
    QImage image;
    EXPECT_FALSE(draw(QStringLiteral("unknown"), image));
    EXPECT_TRUE(inked(image).isNull());
}

TEST_F(SystemSymbolsTest, AreNoneWithoutASourceOrAPlace) {
    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    EXPECT_FALSE(drawSystemSymbol(painter, QStringLiteral("bar"), QRectF(), Qt::red));
    setSystemSymbolSource({});
    EXPECT_FALSE(drawSystemSymbol(painter, QStringLiteral("bar"), QRectF(0, 0, 10, 10), Qt::red));
}

} // namespace

} // namespace Fenwhirl
