import QtQuick
import Fenwhirl.Components

// The base of all text buttons. Use PrimaryButton, SecondaryButton, NeutralButton or DestructiveButton.
//   text            the label; it wraps where the button is narrower than it
//   large           label of 14 pixels and height 34, otherwise 13 and 30
//   designHeight    height with one line of text of the designed size
//   signal clicked  mouse, Space, Return, or a screen reader's press
Pressable {
    id: root

    property bool large: false
    property real designHeight: large ? 34 : 30
    property real sidePadding: large ? 17 : 14
    property color fill: Theme.well
    property color stroke: "transparent"
    property color hoverColor: Theme.hover
    property color pressedColor: Theme.pressed
    property color labelColor: Theme.text
    property int labelSize: large ? 14 : 13
    property int labelWeight: Font.Normal
    // 1 for a dark label, which must not fade together with the fill.
    property real disabledLabelOpacity: 0.4
    readonly property string drawnText: DrawnText.of(text)

    Accessible.role: Accessible.Button
    disabledOpacity: 1
    implicitHeight: designHeight + Theme.lineGrowth + (label.lineCount - 1) * label.lineRoom
    implicitWidth: Math.round(measure.advanceWidth) + 2 * sidePadding
    // One point less than the visible padding, so that a text that is drawn wider than it was measured is not cut.
    leftPadding: sidePadding - 1
    rightPadding: sidePadding - 1

    TextMetrics {
        id: measure
        font.pixelSize: Math.round(root.labelSize * Theme.textScale)
        font.weight: root.labelWeight
        text: root.drawnText
    }

    background: Surface {
        opacity: root.usable ? 1 : 0.4
        color: root.fill
        overlay: root.down ? root.pressedColor : root.hoverColor
        overlaid: root.usable && (root.down || root.hovered)
        overlayDuration: root.down ? Theme.pressDuration : Theme.hoverDuration
        radius: 9 - 9 % Theme.cornerStep
        stroke: root.stroke
    }
    contentItem: Label {
        id: label
        Accessible.ignored: true // the control has the name
        color: root.labelColor
        font.weight: root.labelWeight
        opacity: root.usable ? 1 : root.disabledLabelOpacity
        horizontalAlignment: Text.AlignHCenter
        size: root.labelSize
        text: root.drawnText
        verticalAlignment: Text.AlignVCenter
        wrapMode: root.width < root.implicitWidth - 1 ? Text.Wrap : Text.NoWrap
    }
}
