import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The choice of the appearance: dark, light, or following the system.
Card {
    id: root

    required property PreferencesView preferences

    SettingRow {
        heading: qsTr("Thème")
        title: qsTr("Apparence")

        SegmentedControl {
            currentIndex: root.preferences.theme
            labels: [qsTr("Sombre"), qsTr("Clair"), qsTr("Automatique")]
            text: qsTr("Apparence")
            width: Math.max(300, implicitWidth)

            onActivated: index => root.preferences.theme = index
        }
    }
}
