import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The choice of the interface language. Each language is listed by its own name.
PopupButton {
    required property PreferencesView preferences

    currentIndex: preferences.language
    labels: preferences.languageNames
    text: qsTr("Langue")

    onActivated: index => preferences.language = index
}
