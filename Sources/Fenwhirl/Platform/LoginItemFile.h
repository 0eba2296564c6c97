// Access to the login item's file, which differs between systems only in its path and contents.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

[[nodiscard]] bool loginItemFileExists(const QString& path);

// Creates missing folders and replaces the file atomically; false when that failed or `contents` is absent.
[[nodiscard]] bool writeLoginItemFile(const QString& path, const std::optional<QByteArray>& contents);

// True if the file does not exist afterwards.
[[nodiscard]] bool removeLoginItemFile(const QString& path);
