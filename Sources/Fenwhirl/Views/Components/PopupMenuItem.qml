import QtQuick
import QtQuick.Templates as T
import Fenwhirl.Components

// One item of a PopupMenu: check mark column and text.
//   text, checked, highlighted, signal clicked
T.ItemDelegate {
    id: root

    readonly property color ink: highlighted ? Theme.onAccent : Theme.text

    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.role: Accessible.MenuItem
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    background: Rectangle {
        color: Theme.accent
        radius: 7
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
            anchors.verticalCenter: parent.verticalCenter
            color: root.ink
            font.weight: root.highlighted ? Font.Medium : Font.Normal
            text: root.text
            width: parent.width - x - 8
            x: 32
        }
    }
}
