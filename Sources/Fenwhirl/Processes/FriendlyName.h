// Readable labels for the system's own processes.

#pragma once

#include <QString>
#include <QStringView>

#include <optional>

// The French label of a well-known system process ("WindowServer": "Affichage de l'écran"), or nothing.
// Several processes may share a label; the name must match exactly.
[[nodiscard]] std::optional<QString> systemProcessLabel(QStringView processName);
