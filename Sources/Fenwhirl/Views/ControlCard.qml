import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Enables or disables fan control, and returns all fans to automatic.
Card {
    id: root

    required property ControlView control

    Column {
        spacing: 16

        Column {
            spacing: 4
            width: parent.width

            Label {
                size: 14
                text: qsTr("Contrôle des ventilateurs")
                width: parent.width
            }

            Paragraph {
                color: Theme.muted
                content: root.control.installed ? qsTr("Activé : Fenwhirl peut changer la vitesse des ventilateurs.")
                                                : qsTr("Non activé : Fenwhirl peut seulement lire les températures.")
                width: parent.width
            }

            Paragraph {
                content: qsTr("Une mise à jour de l'assistant est disponible.")
                visible: root.control.outdated
                width: parent.width
            }
        }

        // The reset button is right-aligned in the same row, or below it when the labels of a language need more room.
        Item {
            id: buttons
            readonly property bool oneRow: left.wanted + 12 + reset.implicitWidth <= width

            implicitHeight: oneRow ? reset.height : left.height + 8 + reset.height
            width: parent.width

            Flow {
                id: left
                spacing: 8
                width: Math.min(wanted, parent.width)

                readonly property real wanted: install.visible ? install.implicitWidth
                                                               : again.implicitWidth + spacing + off.implicitWidth

                PrimaryButton {
                    id: install
                    available: !root.control.installing
                    text: root.control.installing ? qsTr("Activation…") : qsTr("Activer le contrôle")
                    visible: !root.control.installed

                    onClicked: root.control.install()
                }

                NeutralButton {
                    id: again
                    Accessible.description: qsTr("Contrôle des ventilateurs")
                    available: !root.control.installing
                    text: root.control.installing ? qsTr("Activation…") : qsTr("Réinstaller")
                    visible: root.control.installed

                    onClicked: root.control.install()
                }

                NeutralButton {
                    id: off
                    Accessible.description: qsTr("Contrôle des ventilateurs")
                    text: qsTr("Désactiver")
                    visible: root.control.installed

                    onClicked: root.control.uninstall()
                }
            }

            NeutralButton {
                id: reset
                text: qsTr("Remettre les ventilateurs en automatique")
                width: Math.min(implicitWidth, parent.width)
                x: buttons.oneRow ? parent.width - width : 0
                y: buttons.oneRow ? 0 : left.height + 8

                onClicked: {
                    root.control.resetToAutomatic()
                    Announcer.say(qsTr("Ventilateurs") + ", " + qsTr("Auto"))
                }
            }
        }
    }
}
