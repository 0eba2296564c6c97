import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// What a step of the onboarding offers to do: choosing the language in the first, enabling fan control in the second,
// nothing in the last.
Item {
    id: root

    required property int step
    required property ControlView control
    required property PreferencesView preferences

    implicitHeight: 34 + Theme.lineGrowth
    implicitWidth: Math.round(360 * Theme.textScale)

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 12
        visible: root.step === 0

        Label {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.muted
            text: qsTr("Langue")
        }

        LanguagePicker {
            fill: Theme.card
            preferences: root.preferences
            width: Math.round(190 * Theme.textScale)
        }
    }

    Row {
        anchors.centerIn: parent
        spacing: 8
        visible: root.step === 1 && root.control.installed

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.good
            height: 15
            name: "checkmark"
            width: 15
        }

        Label {
            text: qsTr("Contrôle activé")
        }
    }

    SecondaryButton {
        anchors.centerIn: parent
        available: !root.control.installing
        large: true
        text: root.control.installing ? qsTr("Activation…") : qsTr("Activer le contrôle")
        visible: root.step === 1 && !root.control.installed

        onClicked: root.control.install()
    }
}
