#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Fenwhirl/Platform/LoginItemText.h"

#include <QDir>

bool LoginItem::isEnabled() {
    return loginItemFileExists(launchAgentPath(QDir::homePath()));
}

bool LoginItem::setEnabled(bool on) {
    const QString agent = launchAgentPath(QDir::homePath());
    return on ? writeLoginItemFile(agent, launchAgentPropertyList(launchAgentProgram(BundleInfo::path())))
              : removeLoginItemFile(agent);
}
