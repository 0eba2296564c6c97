import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One preset: its name, its description, and either the button that applies it or a label that says it is active.
Card {
    id: root

    required property string title
    required property string detail
    required property bool active

    signal applied()

    Item {
        implicitHeight: Math.max(42, texts.implicitHeight)

        Column {
            id: texts
            anchors.left: parent.left
            anchors.right: trailing.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            Label {
                font.weight: Font.DemiBold
                size: 15
                text: root.title
                width: parent.width
            }

            Paragraph {
                color: Theme.muted
                content: root.detail
                width: parent.width
            }
        }

        Item {
            id: trailing
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            height: button.height
            width: Math.max(88 * Theme.textScale, button.implicitWidth, word.implicitWidth)

            NeutralButton {
                id: button
                Accessible.name: text + ": " + root.title
                text: qsTr("Appliquer")
                visible: !root.active
                width: parent.width

                onClicked: root.applied()
            }

            // A tab stop, too, because it takes over the focus of the button that it replaces.
            Label {
                id: word
                Accessible.focusable: true
                Accessible.name: activeFocus ? text + ": " + root.title : text
                activeFocusOnTab: true
                anchors.centerIn: parent
                color: Theme.accent
                font.weight: Font.DemiBold
                text: qsTr("Actif")
                visible: root.active

                FocusRing {
                    target: word
                    targetRadius: 4
                }
            }
        }
    }
}
