// desktop-entry TEMPLATE OUTPUT: writes an installed file with its texts in every language.

#include "PackageTexts.h"

#include <QFile>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("desktop-entry TEMPLATE OUTPUT\n", stderr);
        return 64;
    }
    QFile entryTemplate(QString::fromLocal8Bit(argv[1]));
    QFile output(QString::fromLocal8Bit(argv[2]));
    if (!entryTemplate.open(QIODevice::ReadOnly) || !output.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot read %s or write %s\n", argv[1], argv[2]);
        return 74;
    }
    const QByteArray entry = Fenwhirl::filledTemplate(QString::fromUtf8(entryTemplate.readAll())).toUtf8();
    if (output.write(entry) != entry.size() || !output.flush()) {
        std::fprintf(stderr, "cannot write %s\n", argv[2]);
        return 74;
    }
    return 0;
}
