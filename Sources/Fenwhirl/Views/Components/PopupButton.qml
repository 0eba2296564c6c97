import QtQuick
import Fenwhirl.Components

// A choice from a list, 28 high; its menu opens with the current item over the button.
//   labels          the choices, a list of strings
//   currentIndex    the chosen one; -1 shows no choice; set by the owner
//   text            what is being chosen, for screen readers
//   tight           whether the choice is drawn smaller and with less padding; by default if it would be elided otherwise
//   wantedWidth     the width that the current choice needs at the usual size
//   fill            background colour; that of a well on a card by default
//   signal activated(int index)  a choice was made; the owner then changes currentIndex
// Space, Return, Up and Down open the menu.
Pressable {
    id: root

    required property var labels
    required property int currentIndex
    property color fill: Theme.well
    property bool tight: wantedWidth > width
    readonly property real wantedWidth: Math.ceil(metrics.advanceWidth) + 11 + 8 + arrows.width + 8
    readonly property string currentLabel: labels[currentIndex] ?? ""
    readonly property string accessibleText: currentLabel
    readonly property alias menu: opener.menu // null until it is first opened

    signal activated(int index)

    Accessible.role: Accessible.ComboBox
    implicitHeight: 28 + Theme.lineGrowth
    implicitWidth: Math.round(200 * Theme.textScale)
    leftPadding: tight ? 10 : 11
    rightPadding: 8

    Keys.onDownPressed: root.clicked()
    Keys.onUpPressed: root.clicked()
    onClicked: opener.open()

    background: Surface {
        color: root.fill
        overlay: root.down ? Theme.pressed : Theme.hover
        overlaid: root.enabled && (root.down || root.hovered)
        radius: 9 - 9 % Theme.cornerStep
        stroke: Theme.stroke
    }
    contentItem: Item {
        ElidedLabel {
            Accessible.ignored: true // the control has the name
            anchors.left: parent.left
            anchors.right: arrows.left
            anchors.rightMargin: root.tight ? 6 : 8
            anchors.verticalCenter: parent.verticalCenter
            size: root.tight ? 12 : 13
            text: root.currentLabel
        }

        Symbol {
            id: arrows
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.muted
            height: width
            name: "chevron.up.chevron.down"
            width: Math.round(13 * Theme.textScale)
        }
    }

    TextMetrics {
        id: metrics
        font.pixelSize: Math.round(13 * Theme.textScale)
        text: root.currentLabel
    }

    MenuOpener {
        id: opener
        control: root
        currentIndex: root.currentIndex
        labels: root.labels
        over: true
        text: root.text

        onActivated: index => root.activated(index)
    }
}
