// What the login item's file says, on either system. Pure; any thread.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// Where the launch agent of the user with this home folder lies.
[[nodiscard]] QString launchAgentPath(const QString& home);

// The program that the launch agent opens: the bundle, or the usual place when this is no bundle.
[[nodiscard]] QString launchAgentProgram(const QString& bundlePath);

// An XML property list; nothing for a path that XML cannot carry.
[[nodiscard]] std::optional<QByteArray> launchAgentPropertyList(const QString& programPath);

// A desktop entry; nothing for a path that such an entry cannot carry (a line break).
[[nodiscard]] std::optional<QByteArray> autostartEntry(const QString& executablePath);
