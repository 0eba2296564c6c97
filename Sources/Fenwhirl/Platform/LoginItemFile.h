// The login item's file: its contents on either system, and access to it. What is shared by the two systems, so
// that it can be tested on both.
//
// The functions without a file's path are pure, for any thread; the others access one small file.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Fenwhirl {

// The path of the launch agent for the user with this home folder.
[[nodiscard]] QString launchAgentPath(const QString& home);

// The program that the launch agent opens: the bundle, or /Applications/Fenwhirl.app when this is not a
// bundle.
[[nodiscard]] QString launchAgentProgram(const QString& bundlePath);

// Whether the bundle was downloaded and nobody has moved it yet. The system then runs it from a path that
// differs at each start.
[[nodiscard]] bool isTranslocated(const QString& bundlePath);

// An XML property list; absent for a path that XML cannot represent.
[[nodiscard]] std::optional<QByteArray> launchAgentPropertyList(const QString& programPath);

// A desktop entry; absent for a path that a desktop entry cannot represent (one with a line break).
[[nodiscard]] std::optional<QByteArray> autostartEntry(const QString& executablePath);

[[nodiscard]] bool loginItemFileExists(const QString& path);

// Creates missing folders and replaces the file atomically; false when that failed or `contents` is absent.
[[nodiscard]] bool writeLoginItemFile(const QString& path, const std::optional<QByteArray>& contents);

// True if the file does not exist afterwards.
[[nodiscard]] bool removeLoginItemFile(const QString& path);

} // namespace Fenwhirl
