#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"

#include <QFileInfo>
#include <QIcon>
#include <QSettings>
#include <QStandardPaths>

namespace {

// "/opt/Firefox.app" and "/usr/lib/firefox" are both called "firefox" by their desktop entries.
QString entryName(const QString& applicationPath) {
    QString name = QFileInfo(applicationPath).fileName();
    if (name.endsWith(QStringLiteral(".app")))
        name.chop(4);
    return name.toLower();
}

QString iconName(const QString& entry) {
    const QString file =
        QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry + QStringLiteral(".desktop"));
    if (file.isEmpty())
        return entry;
    const QSettings desktopEntry(file, QSettings::IniFormat);
    return desktopEntry.value(QStringLiteral("Desktop Entry/Icon"), entry).toString();
}

} // namespace

QImage applicationIcon(const QString& applicationPath, int pixels) {
    const QString name = iconName(entryName(applicationPath));
    const QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    return icon.pixmap(QSize(pixels, pixels), 1.0).toImage();
}
