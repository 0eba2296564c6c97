#include "Fenwhirl/Platform/SystemNameLinux.h"

#include "Fenwhirl/Platform/SystemName.h"

#include <QFile>

#include <array>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Decodes a value of a shell-like file. It may be in single quotes, double quotes or none; a backslash
// escapes the next character.
QString unquoted(QByteArray value) {
    value = value.trimmed();
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        value = value.sliced(1, value.size() - 2);
    }
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
        }
        result += value[i];
    }
    return QString::fromUtf8(result).trimmed();
}

} // namespace

QString computerNameFrom(const QByteArray& machineInfo, const QByteArray& hostName) {
    constexpr QByteArrayView nameKey = "PRETTY_HOSTNAME=";
    for (const QByteArray& line : machineInfo.split('\n')) {
        if (line.startsWith(nameKey)) {
            QString name = unquoted(line.sliced(nameKey.size()));
            if (!name.isEmpty()) {
                return name;
            }
        }
    }
    QString name = QString::fromUtf8(hostName.split('.').constFirst());
    // The kernel and the resolver report these when nobody has named the computer.
    return name == QStringLiteral("localhost") || name == QStringLiteral("(none)") ? QString() : name;
}

QString computerName() {
    QFile file(QStringLiteral("/etc/machine-info"));
    const QByteArray machineInfo = file.open(QIODevice::ReadOnly) ? file.read(65536) : QByteArray();
    std::array<char, 256> hostName{};
    if (gethostname(hostName.data(), hostName.size() - 1) != 0) {
        hostName.front() = '\0';
    }
    return computerNameFrom(machineInfo, hostName.data());
}

} // namespace Fenwhirl
