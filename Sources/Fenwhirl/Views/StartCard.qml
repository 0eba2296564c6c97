import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The setting that starts the program with the Mac.
Card {
    id: root

    required property PreferencesView preferences

    SettingRow {
        heading: qsTr("Démarrage")
        title: qsTr("Ouvrir Fenwhirl au démarrage du Mac")

        Switch {
            on: root.preferences.launchAtLogin
            text: qsTr("Ouvrir Fenwhirl au démarrage du Mac")

            onToggled: on => root.preferences.launchAtLogin = on
        }
    }
}
