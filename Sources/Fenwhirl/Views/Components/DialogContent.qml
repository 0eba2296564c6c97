import QtQuick
import Fenwhirl.Components

// The content of a Dialog.
//   title, message, acceptText, destructiveText, cancelText, iconSource, showsIcon   as in Dialog
//   signals accepted, destructive, cancelled   a button was pressed; Return anywhere else presses the first one
//   reset()   makes the first button the one that gets the focus with the dialog
//   begin()   gives the first button the focus, whichever had it last time
FocusScope {
    id: root

    required property string title
    required property string message
    required property string acceptText
    required property string destructiveText
    required property string cancelText
    required property url iconSource
    required property bool showsIcon

    signal accepted()
    signal destructive()
    signal cancelled()

    function reset() {
        first.focus = true
    }

    function begin() {
        first.forceActiveFocus()
    }

    implicitHeight: column.implicitHeight

    Keys.onEnterPressed: root.accepted()
    Keys.onReturnPressed: root.accepted()

    Column {
        id: column
        width: parent.width

        AppIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 48
            source: root.iconSource
            visible: root.showsIcon
        }

        Item {
            height: 12
            visible: root.showsIcon
            width: 1
        }

        Paragraph {
            content: root.title
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            size: 15
            width: parent.width
        }

        Item { height: 6; width: 1 }

        Paragraph {
            color: Theme.muted
            content: root.message
            horizontalAlignment: Text.AlignHCenter
            size: 12
            width: parent.width
        }

        Item { height: 18; width: 1 }

        Column {
            spacing: 8
            width: parent.width

            PrimaryButton {
                id: first
                focus: true
                designHeight: 32
                text: root.acceptText
                width: parent.width

                onClicked: root.accepted()
            }

            DestructiveButton {
                designHeight: 32
                text: root.destructiveText
                visible: text.length > 0
                width: parent.width

                onClicked: root.destructive()
            }

            NeutralButton {
                designHeight: 32
                text: root.cancelText
                visible: text.length > 0
                width: parent.width

                onClicked: root.cancelled()
            }
        }
    }
}
