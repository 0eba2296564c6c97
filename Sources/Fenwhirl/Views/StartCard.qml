import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Whether the program starts with the Mac.
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
