import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The choice of the interface language; each language is named in itself.
PopupButton {
    required property PreferencesView preferences

    currentIndex: preferences.language
    labels: preferences.languageNames
    text: qsTr("Langue")

    onActivated: index => preferences.language = index
}
