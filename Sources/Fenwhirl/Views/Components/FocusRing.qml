import QtQuick
import Fenwhirl.Components

// The accent ring around the focused control: 2 points wide, 2 points outside. Shown only after keyboard use.
//   target        the control; the ring must be its child or sibling
//   targetRadius  corner radius of the control
//   wanted        false for what shows in another way that it has the focus
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
