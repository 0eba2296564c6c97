import QtQuick
import Fenwhirl.Components

// An on/off switch, 38 x 22. It shows the state that its owner sets: a press requests the change, and the owner then sets
// `on`.
//   on              the state shown
//   text            what it switches, for screen readers
//   signal toggled(bool on)  the state that the user requests
Pressable {
    id: root

    required property bool on
    // The position of the knob during the animation: 0 off, 1 on.
    property real progress: on ? 1 : 0

    signal toggled(bool on)

    Accessible.checkable: true
    Accessible.checked: on
    Accessible.role: Accessible.CheckBox
    disabledOpacity: 1
    implicitHeight: 22
    implicitWidth: 38
    ringRadius: 11

    Accessible.onToggleAction: root.use()
    onClicked: root.toggled(!root.on)

    Behavior on progress {
        NumberAnimation { duration: Theme.switchDuration; easing.type: Easing.OutCubic }
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            color: Theme.track
            opacity: root.enabled ? 1 : 0.4
            radius: 11 - 11 % Theme.cornerStep
            visible: root.progress < 1
        }

        Rectangle {
            anchors.fill: parent
            color: Theme.accent
            opacity: root.enabled ? root.progress : 0.4 * root.progress
            radius: 11 - 11 % Theme.cornerStep
        }

        Surface {
            anchors.fill: parent
            color: "transparent"
            overlay: root.down ? Theme.pressed : Theme.hover
            overlaid: root.enabled && (root.down || root.hovered)
            radius: 11 - 11 % Theme.cornerStep
        }

        Knob {
            x: 2 + root.progress * (root.width - width - 4)
            y: 2
        }
    }
}
