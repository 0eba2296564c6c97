#include "IconContainer.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

namespace Fenwhirl {

namespace {

constexpr qsizetype headSize = 8; // a tag of four characters and a length; of container and entries

QByteArray head(const char* type, qsizetype contentSize) {
    QByteArray bytes(type, 4);
    bytes.resize(headSize);
    qToBigEndian(static_cast<quint32>(headSize + contentSize), bytes.data() + 4);
    return bytes;
}

QByteArray drawn(QSvgRenderer& drawing, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

} // namespace

QByteArray iconPicture(const QByteArray& svg, int pixels) {
    QSvgRenderer drawing(svg);
    return drawing.isValid() ? drawn(drawing, pixels) : QByteArray();
}

QByteArray iconContainer(const QByteArray& svg) {
    QSvgRenderer drawing(svg);
    if (!drawing.isValid()) {
        return {};
    }
    QByteArray entries;
    for (const IconEntry& entry : iconEntries) {
        const QByteArray png = drawn(drawing, entry.pixels);
        entries += head(entry.type, png.size()) + png;
    }
    return head("icns", entries.size()) + entries;
}

} // namespace Fenwhirl
