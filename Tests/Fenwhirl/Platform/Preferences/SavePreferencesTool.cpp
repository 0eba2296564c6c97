// Saves one number. PreferencesFaultsTest makes this program's system calls fail one by one.

#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return 64;
    }
    Fenwhirl::FilePreferences store(argv[1]);
    store.setNumber(QStringLiteral("warmThreshold"), 2);
    return store.number(QStringLiteral("warmThreshold")) == 2 ? 0 : 1;
}
