// icon-maker DRAWING.svg ICON.icns: makes the icon file of a macOS bundle out of a drawing. Runs on the
// computer that builds, whatever it builds for.

#include "IconContainer.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: icon-maker DRAWING.svg ICON.icns\n", stderr);
        return 64;
    }
    QFile drawing(QString::fromLocal8Bit(argv[1]));
    if (!drawing.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "icon-maker: %s cannot be read\n", argv[1]);
        return 1;
    }
    const QByteArray icon = iconContainer(drawing.readAll());
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
