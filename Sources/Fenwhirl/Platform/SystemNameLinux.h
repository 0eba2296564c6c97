// The computer's name out of what Linux knows of it. Pure.

#pragma once

#include <QByteArray>
#include <QString>

// `machineInfo` is the text of /etc/machine-info, whose PRETTY_HOSTNAME is the name that a person gave; else
// the host's name up to its first dot. Empty when neither says anything.
[[nodiscard]] QString computerNameFrom(const QByteArray& machineInfo, const QByteArray& hostName);
