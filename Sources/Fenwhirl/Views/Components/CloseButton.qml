import QtQuick
import Fenwhirl.Components

// A small round button with a cross, 24 x 24.
//   text   its name, for screen readers and as a tooltip
//   signal clicked
Pressable {
    id: root

    Accessible.role: Accessible.Button
    implicitHeight: 24
    implicitWidth: 24
    ringRadius: 12

    background: Surface {
        color: "transparent"
        overlay: root.down ? Theme.pressed : Theme.hover
        overlaid: root.down || root.hovered
        radius: 12
    }
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            color: root.hovered ? Theme.text : Theme.muted
            height: 13
            name: "xmark"
            width: 13
        }

        HoverTip {
            text: root.text
            wanted: root.hovered && !root.down
        }
    }
}
