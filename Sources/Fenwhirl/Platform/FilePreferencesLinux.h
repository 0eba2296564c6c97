// Preferences in one file (see PreferencesText.h), replaced as a whole at each change.
//
// Several processes may share the file: a change is made to what the file holds at that moment, under a lock
// that nobody waits for. What could not be written is kept in memory and goes out with the next change. A
// file that is broken, too large or no regular file reads as empty and stays until then. A value of unknown
// form reads as absent and stays until its key is set or removed.
//
// Threads: safe to call from any thread; calls that change something return when it is on disk.

#pragma once

#include "Fenwhirl/Platform/PreferencesStore.h"
#include "Fenwhirl/Platform/PreferencesText.h"
#include "Fenwhirl/Platform/Threads.h"

#include <map>
#include <optional>
#include <string>

class FilePreferences final : public PreferencesStore {
public:
    // The folder of the file is made when it is first needed.
    explicit FilePreferences(std::string path);

private:
    [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const override;
    void store(const QString& key, std::optional<PreferenceValue> value) override;
    void writeChanges() FENWHIRL_REQUIRES(mutex_);

    const std::string path_;
    mutable Mutex mutex_;
    PreferenceValues values_ FENWHIRL_GUARDED_BY(mutex_);
    std::map<QString, std::optional<PreferenceValue>> unwritten_ FENWHIRL_GUARDED_BY(mutex_);
};
