#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/LoginItem.h"
#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Fenwhirl/Platform/LoginItemText.h"

#include <QDir>

bool LoginItem::isEnabled() {
    return loginItemFileExists(launchAgentPath(QDir::homePath()));
}

namespace {

// macOS runs a downloaded program that nobody has moved yet from a path that is different at each start.
bool isTranslocated(const QString& bundle) {
    return bundle.contains(QStringLiteral("/AppTranslocation/"));
}

} // namespace

bool LoginItem::setEnabled(bool on) {
    if (on && isTranslocated(BundleInfo::path())) {
        return false;
    }
    const QString agent = launchAgentPath(QDir::homePath());
    return on ? writeLoginItemFile(agent, launchAgentPropertyList(launchAgentProgram(BundleInfo::path())))
              : removeLoginItemFile(agent);
}
