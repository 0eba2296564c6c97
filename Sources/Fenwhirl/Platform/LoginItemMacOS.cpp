#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/LoginItemFile.h"

#include <QDir>

namespace Fenwhirl {

QString LoginItem::path() {
    return launchAgentPath(QDir::homePath());
}

bool LoginItem::isEnabled() {
    return loginItemFileExists(path());
}

bool LoginItem::setEnabled(bool on) {
    if (on && isTranslocated(BundleInfo::path())) {
        return false;
    }
    return on ? writeLoginItemFile(path(), launchAgentPropertyList(launchAgentProgram(BundleInfo::path())))
              : removeLoginItemFile(path());
}

} // namespace Fenwhirl
