import QtQuick
import Fenwhirl.Components

// One page in the sidebar, 40 high.
//   symbol, text, selected, signal clicked
//   selectedText   says that it is selected, for screen readers, most of which do not announce that for a page tab
Pressable {
    id: root

    required property string symbol
    required property bool selected
    property string selectedText: ""
    readonly property color ink: selected ? Theme.accentSoft : Theme.secondaryText

    Accessible.description: selected ? selectedText : ""
    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: selected
    tabStop: selected
    implicitHeight: 40 + Theme.lineGrowth
    implicitWidth: 188

    background: Surface {
        color: root.selected ? Theme.tint : "transparent"
        overlay: root.down ? Theme.pressed : Theme.hover
        overlaid: root.down || (root.hovered && !root.selected)
        radius: 9 - 9 % Theme.cornerStep
    }
    contentItem: Item {
        // The symbol is centred in a frame of 20 that begins after the padding of 10.
        Symbol {
            id: picture
            anchors.verticalCenter: parent.verticalCenter
            color: root.ink
            height: width
            name: root.symbol
            width: Theme.symbolSize
            x: 11
        }

        ElidedLabel {
            Accessible.ignored: true // the control has the name
            anchors.verticalCenter: parent.verticalCenter
            color: root.ink
            size: 14
            text: root.text
            width: parent.width - x - 10
            x: picture.x + picture.width + 11
        }
    }
}
