#include "Fenwhirl/Platform/Preferences/ConfigFolderLinux.h"

#include <QByteArray>
#include <QDir>

namespace Fenwhirl {

std::string configFolder() {
    const QByteArray chosen = qgetenv("XDG_CONFIG_HOME");
    if (chosen.startsWith('/')) {
        return chosen.toStdString();
    }
    return QDir::homePath().toStdString() + "/.config";
}

} // namespace Fenwhirl
