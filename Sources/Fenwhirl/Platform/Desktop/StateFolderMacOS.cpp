#include "Fenwhirl/Platform/Desktop/StateFolder.h"

#include <QStandardPaths>

namespace Fenwhirl {

QString stateFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/com.fenwhirl.app");
}

} // namespace Fenwhirl
