#include "Fenwhirl/Platform/Desktop/StateFolder.h"

#include <QStandardPaths>

QString stateFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/com.fenwhirl.app");
}
