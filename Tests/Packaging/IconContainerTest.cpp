// Parses the generated .icns container according to its format: every size is present, every length field is
// correct, and every image contains the drawing.

#include "IconContainer.h"

#include <QFile>
#include <QImage>
#include <QMap>
#include <QtEndian>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

QByteArray drawing() {
    QFile file(QStringLiteral(FENWHIRL_APP_ICON));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

quint32 numberAt(const QByteArray& bytes, qsizetype offset) {
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

// Type and content of each entry. Empty when the header is wrong or the lengths do not add up.
QMap<QByteArray, QByteArray> entriesOf(const QByteArray& icon) {
    QMap<QByteArray, QByteArray> entries;
    if (icon.size() < 8 || icon.left(4) != "icns" || numberAt(icon, 4) != icon.size()) {
        return {};
    }
    qsizetype at = 8;
    while (at < icon.size()) {
        if (icon.size() - at < 8) {
            return {};
        }
        const auto size = static_cast<qsizetype>(numberAt(icon, at + 4));
        if (size < 8 || size > icon.size() - at) {
            return {};
        }
        entries.insert(icon.mid(at, 4), icon.mid(at + 8, size - 8));
        at += size;
    }
    return entries;
}

TEST(IconContainer, ContainsThePictureInEverySize) {
    const QMap<QByteArray, QByteArray> entries = entriesOf(iconContainer(drawing()));
    const QMap<QByteArray, int> expected = {{"ic07", 128}, {"ic08", 256}, {"ic09", 512}, {"ic10", 1024},
                                            {"ic11", 32},  {"ic12", 64},  {"ic13", 256}, {"ic14", 512}};
    EXPECT_EQ(entries.keys(), expected.keys());
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        const QImage image = QImage::fromData(entry.value(), "PNG");
        EXPECT_EQ(image.size(), QSize(expected[entry.key()], expected[entry.key()]))
            << entry.key().constData();
    }
}

TEST(IconContainer, IsDrawnInEverySize) {
    const QMap<QByteArray, QByteArray> entries = entriesOf(iconContainer(drawing()));
    ASSERT_FALSE(entries.isEmpty());
    for (const QByteArray& png : entries) {
        const QImage image = QImage::fromData(png, "PNG");
        const int side = image.width();
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << side; // transparent outside the body
        const QColor body = image.pixelColor(side / 5, side / 2);
        EXPECT_EQ(body.alpha(), 255) << side;
        EXPECT_GT(body.blue(), body.red()) << side;
        const QColor blade = image.pixelColor(side * 516 / 1024, side * 300 / 1024); // a fan blade
        EXPECT_GT(blade.red(), 200) << side;
        EXPECT_GT(blade.green(), 200) << side;
    }
}

TEST(IconContainer, IsNoneWithoutADrawing) {
    EXPECT_TRUE(iconContainer({}).isEmpty());
    EXPECT_TRUE(iconContainer("no drawing").isEmpty());
}

} // namespace

} // namespace Fenwhirl
