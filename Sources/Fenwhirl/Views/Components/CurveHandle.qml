import QtQuick
import Fenwhirl.Components

// One of the two handles of a curve: a temperature that keys and screen readers change in steps, as in Slider. Its owner
// centres it on the line and handles the pointer.
//   value, from, to, stepSize   as in Slider
//   text, spokenValue   as in Slider
//   hovered, dragged   whether the pointer is over it, and whether it drags it
//   hollow    whether its value has no effect
//   lately    whether a key has moved it a moment ago
//   signal modified(double value)  the requested value
//   signal dragCancelled()             Escape was pressed during a drag
FocusScope {
    id: root

    required property double value
    required property double from
    required property double to
    required property double stepSize
    property string text: ""
    property string spokenValue: ""
    property bool hovered: false
    property bool dragged: false
    property bool hollow: false
    readonly property bool lately: lingering.running
    readonly property real diameter: Math.round(15 + 5 * (Theme.textScale - 1))

    signal modified(double value)
    signal dragCancelled()

    height: diameter
    width: diameter

    AccessibleRange {
        id: range

        Accessible.focusable: true
        Accessible.description: sliderTextHeard ? "" : ValueLabelParts.unit(root.spokenValue)
        Accessible.name: root.text
        Accessible.role: Accessible.Slider
        accessibleText: root.spokenValue
        activeFocusOnTab: true
        anchors.fill: parent
        current: root.value
        focus: true
        maximumValue: root.to
        minimumValue: root.from
        stepSize: root.stepSize

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
                step(2)
                break
            case Qt.Key_PageDown:
                step(-2)
                break
            case Qt.Key_Home:
                ask(root.from)
                break
            case Qt.Key_End:
                ask(root.to)
                break
            case Qt.Key_Escape:
                event.accepted = root.dragged
                if (root.dragged)
                    root.dragCancelled()
                return
            default:
                return
            }
            lingering.restart()
            event.accepted = true
        }
        onRequested: value => ask(Stepping.nearest(value, root.from, root.to, root.stepSize))

        function ask(next: double) {
            if (next !== root.value)
                root.modified(next)
        }

        function step(count: int) {
            ask(Stepping.after(root.value, root.from, root.to, root.stepSize, count))
        }
    }

    Timer {
        id: lingering
        interval: 800
    }

    Disc {
        anchors.centerIn: parent
        color: Theme.accent
        height: 26 * root.diameter / 15
        opacity: root.enabled && (root.hovered || root.dragged) ? 0.22 : 0
        visible: opacity > 0
        width: height

        Behavior on opacity {
            NumberAnimation { duration: Theme.hoverDuration; easing.type: Easing.OutCubic }
        }
    }

    Disc {
        anchors.fill: parent
        color: root.hollow ? Theme.card : Theme.knob
        ringColor: root.hollow ? Theme.muted : Theme.accent
        ringWidth: root.hollow ? 2 : 2.5
        scale: root.enabled && (root.hovered || root.dragged) ? 1.08 : 1

        Behavior on scale {
            NumberAnimation { duration: Theme.hoverDuration; easing.type: Easing.OutCubic }
        }
    }

    Item {
        anchors.centerIn: parent
        height: root.diameter - 1
        width: height

        FocusRing {
            target: range
            targetRadius: parent.width / 2
        }
    }
}
