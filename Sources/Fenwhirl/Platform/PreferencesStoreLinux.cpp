#include "Fenwhirl/Platform/ConfigFolderLinux.h"
#include "Fenwhirl/Platform/FilePreferencesLinux.h"
#include "Fenwhirl/Platform/PreferencesStore.h"

std::unique_ptr<PreferencesStore> openUserPreferences() {
    return std::make_unique<FilePreferences>(configFolder() + "/com.fenwhirl.app/preferences.json");
}
