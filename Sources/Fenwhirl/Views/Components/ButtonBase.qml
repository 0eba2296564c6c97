import QtQuick
import Fenwhirl.Components

// What all text buttons share. Use PrimaryButton, SecondaryButton, NeutralButton or DestructiveButton.
//   text            the label
//   large           14 pixels and 34 high, else 13 and 30
//   signal clicked  mouse, Space, Return, or a screen reader's press
Pressable {
    id: root

    property bool large: false
    property color fill: Theme.well
    property color stroke: "transparent"
    property color hoverColor: Theme.hover
    property color pressedColor: Theme.pressed
    property color labelColor: Theme.text
    property int labelSize: large ? 14 : 13
    property int labelWeight: Font.Normal

    Accessible.role: Accessible.Button
    implicitHeight: large ? 34 : 30
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    leftPadding: 14
    rightPadding: 14

    background: Surface {
        color: root.fill
        overlay: root.down ? root.pressedColor : root.hoverColor
        overlaid: root.enabled && (root.down || root.hovered)
        overlayDuration: root.down ? Theme.pressDuration : Theme.hoverDuration
        radius: 9
        stroke: root.stroke
    }
    contentItem: Label {
        color: root.labelColor
        font.weight: root.labelWeight
        horizontalAlignment: Text.AlignHCenter
        size: root.labelSize
        text: root.text
        verticalAlignment: Text.AlignVCenter
    }
}
