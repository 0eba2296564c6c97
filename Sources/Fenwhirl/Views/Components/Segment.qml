import QtQuick
import Fenwhirl.Components

// One choice of a SegmentedControl: its text and its states. The control moves the selection behind it.
//   text, selected, tabStop, labelSize, signal clicked
//   textWidth   width of the text in its widest state, so that selecting moves nothing
Pressable {
    id: root

    required property bool selected
    required property int labelSize
    readonly property real textWidth: measure.advanceWidth

    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.role: Accessible.RadioButton
    Accessible.onToggleAction: root.use() // the action with which VoiceOver presses it
    disabledOpacity: 1
    showsFocusRing: false // the ring is around the whole control

    background: Surface {
        color: "transparent"
        overlay: root.down ? (root.selected ? Theme.accentDown : Theme.pressed) : Theme.hover
        overlaid: root.enabled && (root.down || (root.hovered && !root.selected))
        radius: 8
    }
    contentItem: Label {
        Accessible.ignored: true // the control has the name
        color: root.selected ? Theme.onAccent : Theme.secondaryText
        font.weight: root.selected ? Font.DemiBold : Font.Normal
        horizontalAlignment: Text.AlignHCenter
        size: root.labelSize
        text: root.text
        verticalAlignment: Text.AlignVCenter
    }

    TextMetrics {
        id: measure
        font.pixelSize: Math.round(13 * Theme.textScale)
        font.weight: Font.DemiBold
        text: root.text
    }
}
