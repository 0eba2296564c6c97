// Preferences in one file (see PreferencesText.h), which is replaced as a whole at each change.
//
// Several processes may share the file. A change is applied to the file's current contents, under a lock that
// is tried but never waited for. A change that could not be written is kept in memory and written with the
// next one. A file that is broken, too large or not a regular file reads as empty and stays until the next
// change. A value of unknown form reads as absent and stays until its key is set or removed.
//
// Threads: safe from any thread. A call that changes something returns when the change is on disk.

#pragma once

#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"
#include "Fenwhirl/Platform/Preferences/PreferencesText.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <map>
#include <optional>
#include <string>

namespace Fenwhirl {

class FilePreferences final : public PreferencesStore {
public:
    // Creates the file's folder when it is first needed.
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

} // namespace Fenwhirl
