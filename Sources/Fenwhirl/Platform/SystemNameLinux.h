// Derives the computer's name from what Linux knows. Pure.

#pragma once

#include <QByteArray>
#include <QString>

namespace Fenwhirl {

// `machineInfo` is the text of /etc/machine-info; its PRETTY_HOSTNAME is the name that a person gave. Without
// one the result is the host name up to its first dot. Empty when neither is set.
[[nodiscard]] QString computerNameFrom(const QByteArray& machineInfo, const QByteArray& hostName);

} // namespace Fenwhirl
