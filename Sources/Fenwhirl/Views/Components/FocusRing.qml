import QtQuick
import Fenwhirl.Components

// The accent-coloured ring around the focused control: 2 points wide, 2 points outside. Shown only after keyboard use.
//   target        the control; the ring must be its child or sibling
//   targetRadius  corner radius of the control
//   wanted        false for a control that shows its focus in another way
Rectangle {
    id: root

    required property Item target
    required property real targetRadius
    property bool wanted: true

    objectName: "focusRing"
    anchors.fill: parent
    anchors.margins: -4
    border.color: Theme.accent
    border.width: 2
    color: "transparent"
    radius: targetRadius + 4 - (targetRadius + 4) % Theme.cornerStep
    visible: wanted && target.activeFocus && KeyboardFocus.active
    z: 1
}
