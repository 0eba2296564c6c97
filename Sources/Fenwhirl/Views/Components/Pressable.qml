import QtQuick
import QtQuick.Templates as T
import Fenwhirl.Components

// What everything that can be pressed shares: hover, keys, disabled look, focus ring. The base of the other controls.
//   text            what it is called, also for screen readers
//   ringRadius      corner radius of the control, for the ring around it
//   signal clicked  mouse, Space, Return, or a screen reader's press
T.AbstractButton {
    id: root

    property real ringRadius: 9

    Accessible.name: text
    // Without it assistive technology is offered the action, and pressing does nothing.
    Accessible.onPressAction: root.clicked()
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4

    Keys.onEnterPressed: root.clicked()
    Keys.onReturnPressed: root.clicked()

    FocusRing {
        target: root
        targetRadius: root.ringRadius
    }
}
