import QtQuick
import Fenwhirl.Components

// One item of a PopupMenu: a column for the check mark, and the text.
//   text, checked, highlighted, signal clicked
Pressable {
    id: root

    required property bool checked
    required property bool highlighted
    readonly property color ink: highlighted ? Theme.onAccent : Theme.text

    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.role: Accessible.MenuItem
    takesFocus: false

    Keys.enabled: false // the list handles them, also while this is its current item

    background: Rectangle {
        color: Theme.accent
        radius: 7 - 7 % Theme.cornerStep
        visible: root.highlighted
    }
    contentItem: Item {
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: root.highlighted ? Theme.onAccent : Theme.accent
            height: 13
            name: "checkmark"
            visible: root.checked
            width: 13
            x: 9
        }

        ElidedLabel {
            Accessible.ignored: true // the control has the name
            anchors.verticalCenter: parent.verticalCenter
            color: root.ink
            font.weight: root.highlighted ? Font.Medium : Font.Normal
            text: root.text
            width: parent.width - x - 8
            x: 31
        }
    }
}
