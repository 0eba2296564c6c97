#include "Fenwhirl/Platform/Desktop/StateFolder.h"

#include <QDir>

namespace Fenwhirl {

QString stateFolder() {
    const QString chosen = QString::fromLocal8Bit(qgetenv("XDG_STATE_HOME"));
    const QString folder =
        QDir::isAbsolutePath(chosen) ? chosen : QDir::homePath() + QStringLiteral("/.local/state");
    return folder + QStringLiteral("/com.fenwhirl.app");
}

} // namespace Fenwhirl
