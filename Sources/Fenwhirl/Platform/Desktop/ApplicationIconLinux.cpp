#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"

#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>

namespace Fenwhirl {

namespace {

constexpr qint64 maxFileSize = qint64{256} * 1024; // bytes

// The base name of the desktop entry. For both "/opt/Firefox.app" and "/usr/lib/firefox" it is "firefox".
QString entryName(const QString& applicationPath) {
    QString name = QFileInfo(applicationPath).fileName();
    if (name.endsWith(QStringLiteral(".app"))) {
        name.chop(4);
    }
    return name.toLower();
}

// The icon that a desktop entry names. The entry is not read with QSettings, because its values may contain
// unescaped commas and semicolons.
QString iconIn(const QString& file) {
    QFile entry(file);
    if (!entry.open(QIODevice::ReadOnly)) {
        return {};
    }
    bool isInside = false;
    for (const QByteArray& raw : entry.read(maxFileSize).split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            isInside = line == "[Desktop Entry]";
        } else if (isInside && line.startsWith("Icon=")) {
            return QString::fromUtf8(line.sliced(5).trimmed());
        }
    }
    return {};
}

QString iconName(const QString& applicationPath) {
    if (applicationPath.endsWith(QStringLiteral(".desktop"))) {
        return iconIn(applicationPath);
    }
    const QString entry = entryName(applicationPath);
    const QString file =
        QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry + QStringLiteral(".desktop"));
    const QString icon = file.isEmpty() ? QString() : iconIn(file);
    return icon.isEmpty() ? entry : icon;
}

} // namespace

QImage applicationIcon(const QString& applicationPath, int pixels) {
    const QString name = iconName(applicationPath);
    const QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    return icon.pixmap(QSize(pixels, pixels), 1.0).toImage();
}

} // namespace Fenwhirl
