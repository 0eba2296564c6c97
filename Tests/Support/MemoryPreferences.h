// Preferences that live in memory as long as the test, with a count of the writes. Like the real store, they
// may be used from any thread. The test may access `values` and `writes` only while no other thread uses the
// store.

#pragma once

#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

namespace Fenwhirl {

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

} // namespace Fenwhirl
