// icon-maker DRAWING.svg ICON.icns: makes the icon file of a macOS bundle from a drawing. With a third
// argument, the size in pixels, it makes a PNG picture instead. Runs on the building computer, whatever the
// target is.

#include "IconContainer.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    const int pixels = argc == 4 ? std::atoi(argv[3]) : 0;
    if (argc != 3 && pixels <= 0) {
        std::fputs("usage: icon-maker DRAWING.svg ICON.icns | DRAWING.svg PICTURE.png PIXELS\n", stderr);
        return 64;
    }
    QFile drawing(QString::fromLocal8Bit(argv[1]));
    if (!drawing.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "icon-maker: %s cannot be read\n", argv[1]);
        return 1;
    }
    const QByteArray svg = drawing.readAll();
    const QByteArray icon = pixels > 0 ? Fenwhirl::iconPicture(svg, pixels) : Fenwhirl::iconContainer(svg);
    if (icon.isEmpty()) {
        std::fprintf(stderr, "icon-maker: %s is no drawing\n", argv[1]);
        return 1;
    }
    QSaveFile file(QString::fromLocal8Bit(argv[2]));
    if (!file.open(QIODevice::WriteOnly) || file.write(icon) != icon.size() || !file.commit()) {
        std::fprintf(stderr, "icon-maker: %s cannot be written\n", argv[2]);
        return 1;
    }
    return 0;
}
