#include "Fenwhirl/Platform/Preferences/ConfigFolderLinux.h"
#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

#include <filesystem>

namespace {

std::string preferencesFolder() {
    return configFolder() + "/com.fenwhirl.app";
}

std::string trialFile() {
    return preferencesFolder() + "/self-check.json";
}

} // namespace

std::unique_ptr<PreferencesStore> openUserPreferences() {
    return std::make_unique<FilePreferences>(preferencesFolder() + "/preferences.json");
}

// A file of its own: one of the user's that is broken would be overwritten by the first change.
std::unique_ptr<PreferencesStore> openTrialPreferences() {
    return std::make_unique<FilePreferences>(trialFile());
}

void removeTrialPreferences() {
    std::error_code ignored;
    std::filesystem::remove(trialFile(), ignored);
    std::filesystem::remove(trialFile() + ".lock", ignored);
    std::filesystem::remove(preferencesFolder(), ignored); // one that is not empty stays
}
