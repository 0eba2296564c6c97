import QtQuick
import Fenwhirl.Components

// One of several choices, 28 high: a button that is filled with the accent colour while selected. See ChipRow.
//   text, selected, signal clicked
//   naturalWidth   the width that its text needs
ButtonBase {
    id: root

    required property bool selected
    // Measured in the weight of the selected state, so that selecting a chip moves nothing.
    readonly property real naturalWidth: Math.round(measure.advanceWidth) + 2 * sidePadding

    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.role: Accessible.RadioButton
    Accessible.onToggleAction: root.use() // the action with which VoiceOver presses it
    fill: selected ? Theme.accent : Theme.well
    hoverColor: selected ? Theme.accentHover : Theme.hover
    designHeight: 28
    labelColor: selected ? Theme.onAccent : Theme.text
    labelSize: 12
    labelWeight: selected ? Font.DemiBold : Font.Normal
    pressedColor: selected ? Theme.accentDown : Theme.pressed
    sidePadding: 10
    stroke: selected ? "transparent" : Theme.stroke

    TextMetrics {
        id: measure
        font.pixelSize: Math.round(12 * Theme.textScale)
        font.weight: Font.DemiBold
        text: root.text
    }
}
