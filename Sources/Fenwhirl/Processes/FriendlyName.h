// Readable names for processes that belong to no application.

#pragma once

#include <QString>
#include <QStringView>

#include <functional>

namespace Fenwhirl {

// The label of a well-known system process ("WindowServer": "Affichage de l'écran"), translated by `localize`
// into the interface language; any other name is returned unchanged. Several processes may share a label; the
// name must match exactly. Pure; any thread.
[[nodiscard]] QString friendlyName(QStringView processName,
                                   const std::function<QString(const QString& frenchLabel)>& localize);

} // namespace Fenwhirl
