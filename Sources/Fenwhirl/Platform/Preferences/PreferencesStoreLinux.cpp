#include "Fenwhirl/Platform/Preferences/ConfigFolderLinux.h"
#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

std::unique_ptr<PreferencesStore> openUserPreferences() {
    return std::make_unique<FilePreferences>(configFolder() + "/com.fenwhirl.app/preferences.json");
}
