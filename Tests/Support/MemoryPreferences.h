// Preferences that live as long as the test and count what was written. For any thread, as the real ones;
// `values` and `writes` are for the test alone, while nobody else is at work.

#pragma once

#include "Fenwhirl/Platform/PreferencesStore.h"
#include "Fenwhirl/Platform/Threads.h"

class MemoryPreferences : public PreferencesStore {
public:
    PreferenceValues values;
    int writes = 0;

private:
    [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const override {
        const MutexLock lock(mutex_);
        const auto entry = values.find(key);
        return entry == values.end() ? std::nullopt : std::optional(entry->second);
    }

    void store(const QString& key, std::optional<PreferenceValue> value) override {
        const MutexLock lock(mutex_);
        ++writes;
        if (value) {
            values.insert_or_assign(key, *std::move(value));
        } else {
            values.erase(key);
        }
    }

    mutable Mutex mutex_;
};
