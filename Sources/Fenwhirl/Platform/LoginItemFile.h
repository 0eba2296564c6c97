// The file of the login item: one for each system, handled alike.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

[[nodiscard]] bool loginItemFileExists(const QString& path);

// Makes the missing folders and replaces the file as a whole; false when that failed or there are no
// contents.
[[nodiscard]] bool writeLoginItemFile(const QString& path, const std::optional<QByteArray>& contents);

// True when there is no such file afterwards.
[[nodiscard]] bool removeLoginItemFile(const QString& path);
