#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Fenwhirl/Platform/LoginItemText.h"
#include "Fenwhirl/Platform/Preferences/ConfigFolderLinux.h"

#include <QCoreApplication>

namespace {

QString entryPath() {
    return QString::fromStdString(configFolder()) + QStringLiteral("/autostart/com.fenwhirl.app.desktop");
}

} // namespace

bool LoginItem::isEnabled() {
    return loginItemFileExists(entryPath());
}

bool LoginItem::setEnabled(bool on) {
    return on ? writeLoginItemFile(entryPath(), autostartEntry(QCoreApplication::applicationFilePath()))
              : removeLoginItemFile(entryPath());
}
