#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Fenwhirl/Platform/LoginItemText.h"

#include <QDir>

namespace {

QString agentPath() {
    return QDir::homePath() + QStringLiteral("/Library/LaunchAgents/com.fenwhirl.app.plist");
}

} // namespace

bool LoginItem::isEnabled() {
    return loginItemFileExists(agentPath());
}

bool LoginItem::setEnabled(bool on) {
    return on ? writeLoginItemFile(agentPath(),
                                   launchAgentPropertyList(launchAgentProgram(BundleInfo::path())))
              : removeLoginItemFile(agentPath());
}
