import QtQuick
import Fenwhirl.Components

// A small choice among others, 28 high: a button that is filled with the accent while selected. See ChipRow.
//   text, selected, signal clicked
//   naturalWidth   what its text asks for
ButtonBase {
    id: root

    required property bool selected
    // Measured in the selected weight, so that choosing moves nothing.
    readonly property real naturalWidth: Math.round(measure.advanceWidth) + 2 * sidePadding

    Accessible.checkable: true
    Accessible.checked: selected
    Accessible.role: Accessible.RadioButton
    Accessible.onToggleAction: root.use() // which is how VoiceOver presses it
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
