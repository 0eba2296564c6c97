#include "Fenwhirl/Platform/LoginItemFile.h"

#include "Fenwhirl/Platform/Toolkit/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool loginItemFileExists(const QString& path) {
    return QFileInfo::exists(path);
}

bool writeLoginItemFile(const QString& path, const std::optional<QByteArray>& contents) {
    return contents && QDir().mkpath(QFileInfo(path).path()) &&
           replaceFile(path.toStdString(), contents->toStdString());
}

bool removeLoginItemFile(const QString& path) {
    return !loginItemFileExists(path) || QFile::remove(path);
}
