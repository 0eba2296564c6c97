import QtQuick
import Fenwhirl.Components

// A horizontal slider, 20 high. It shows the value that its owner sets: moving it requests a value, and the owner then sets
// `value`. While the pointer holds the knob, the knob follows the pointer.
//   value, from, to, stepSize
//   text, spokenValue   what it sets, and the value with its unit, for screen readers
//   detail          what screen readers say besides
//   valueText, unit, widestText  the value and its unit for the bubble above the knob, and the widest text that the value
//                   can have; without a valueText there is no bubble
//   bubble          appears while the knob is held, and for a moment after each key
//   measured        the value changes by itself; screen readers then hear the value that it had when it got the focus,
//                   because they announce every change of the focused control
//   signal moved(double value)  the requested value: a multiple of the step, or one of the ends
// A press on the track jumps there. Arrow keys move by one step, Page keys by ten, Home and End to the ends.
FocusScope {
    id: root

    required property double value
    required property double from
    required property double to
    property double stepSize: 1
    property string text: ""
    property string spokenValue: ""
    property string detail: ""
    property string valueText: ""
    property string unit: ""
    property string widestText: valueText
    property bool measured: false
    readonly property alias bubble: valueBubble
    readonly property bool pressed: area.pressed
    readonly property double shown: pressed ? held : value
    readonly property double position: Stepping.fraction(shown, from, to)
    property double held: 0

    signal moved(double value)

    implicitHeight: 20
    implicitWidth: 200

    function ask(next) {
        held = next
        if (next !== value)
            moved(next)
    }

    AccessibleRange {
        id: range

        Accessible.focusable: true
        // Where only the number can be heard, the description adds the unit, unless it is heard there anyway.
        Accessible.description: root.detail !== "" || sliderTextHeard ? root.detail : ValueLabelParts.unit(root.spokenValue)
        Accessible.name: root.text
        Accessible.role: Accessible.Slider
        activeFocusOnTab: true
        anchors.fill: parent
        focus: true
        maximumValue: root.to
        minimumValue: root.from
        stepSize: root.stepSize

        Binding on accessibleText {
            restoreMode: Binding.RestoreNone
            value: root.spokenValue
            when: !root.measured || !range.activeFocus
        }

        Binding on current {
            restoreMode: Binding.RestoreNone
            // Measured values may lie beyond the range that can be requested.
            value: Math.max(root.from, Math.min(root.value, root.to))
            when: !root.measured || !range.activeFocus
        }

        Accessible.onDecreaseAction: step(-1)
        Accessible.onIncreaseAction: step(1)
        Keys.onPressed: event => {
            switch (event.key) {
            case Qt.Key_Right:
            case Qt.Key_Up:
                step(1)
                break
            case Qt.Key_Left:
            case Qt.Key_Down:
                step(-1)
                break
            case Qt.Key_PageUp:
                step(10)
                break
            case Qt.Key_PageDown:
                step(-10)
                break
            case Qt.Key_Home:
                root.ask(root.from)
                break
            case Qt.Key_End:
                root.ask(Math.max(root.from, root.to))
                break
            default:
                return
            }
            lingering.restart()
            event.accepted = true
        }
        onRequested: value => root.ask(Stepping.nearest(value, root.from, root.to, root.stepSize))

        function step(count: int) {
            root.ask(Stepping.after(root.value, root.from, root.to, root.stepSize, count))
        }
    }

    Timer {
        id: lingering
        interval: 800
    }

    Rectangle {
        id: track
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.track
        height: 4
        opacity: root.enabled ? 1 : 0.4
        radius: 2
        width: parent.width

        Rectangle {
            color: Theme.accent
            height: parent.height
            radius: parent.radius
            width: knob.x + knob.width / 2
        }
    }

    Knob {
        id: knob
        anchors.verticalCenter: parent.verticalCenter
        scale: area.containsMouse && root.enabled ? 1.08 : 1
        x: root.position * (root.width - width)

        Behavior on scale {
            NumberAnimation { duration: Theme.hoverDuration; easing.type: Easing.OutCubic }
        }

        FocusRing {
            target: range
            targetRadius: 9
        }
    }

    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true

        onPositionChanged: mouse => { if (pressed) follow(mouse.x) }
        onPressed: mouse => {
            range.forceActiveFocus(Qt.MouseFocusReason)
            root.held = root.value
            // A press on the knob grabs it without moving it.
            grip = Math.abs(mouse.x - knob.x - knob.width / 2) <= knob.width / 2 ? mouse.x - knob.x - knob.width / 2 : 0
            if (grip === 0)
                follow(mouse.x)
        }

        property real grip: 0

        function follow(x: real) {
            const travel = Math.max(1, root.width - knob.width)
            const fraction = (x - grip - knob.width / 2) / travel
            root.ask(Stepping.nearest(root.from + fraction * (root.to - root.from), root.from, root.to, root.stepSize))
        }
    }

    ValueBubble {
        id: valueBubble
        aim: knob.x + knob.width / 2
        designWidth: 92
        leftmost: -8
        rightmost: root.width + 8
        shown: (area.pressed || lingering.running) && root.valueText !== ""
        unit: root.unit
        unitColor: Theme.muted
        reading: root.valueText
        widestValue: root.widestText
        y: knob.y - 4 - height
    }
}
