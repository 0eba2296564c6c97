#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Fenwhirl/Platform/Preferences/ConfigFolderLinux.h"

#include <QCoreApplication>

namespace Fenwhirl {

QString LoginItem::path() {
    return QString::fromStdString(configFolder()) + QStringLiteral("/autostart/com.fenwhirl.app.desktop");
}

bool LoginItem::isEnabled() {
    return loginItemFileExists(path());
}

bool LoginItem::setEnabled(bool on) {
    return on ? writeLoginItemFile(path(), autostartEntry(QCoreApplication::applicationFilePath()))
              : removeLoginItemFile(path());
}

} // namespace Fenwhirl
