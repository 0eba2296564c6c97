import QtQuick
import Fenwhirl.Components

// A minus and a plus button, 64 x 26. Its owner keeps the value: a press requests one, and the owner then sets `value`.
//   value, from, to, stepSize
//   text, spokenValue   what it sets, and the value with its unit, for screen readers
//   signal modified(double value)  the requested value, within the range
// A half whose step would leave the range is dimmed and does nothing. Holding repeats after 400 ms, then every 90 ms.
// Keys: Up, Right and + step up; Down, Left and - step down.
FocusScope {
    id: root

    required property double value
    required property double from
    required property double to
    property double stepSize: 1
    property string text: ""
    property string spokenValue: ""

    signal modified(double value)

    implicitHeight: 26
    implicitWidth: 64
    opacity: enabled ? 1 : 0.4

    function step(direction: int) {
        if (Stepping.possible(value, from, to, stepSize, direction))
            modified(Stepping.after(value, from, to, stepSize, direction))
    }

    AccessibleRange {
        id: range

        Accessible.focusable: true
        Accessible.name: root.text
        Accessible.role: Accessible.SpinBox
        accessibleText: root.spokenValue
        activeFocusOnTab: true
        anchors.fill: parent
        current: root.value
        focus: true
        maximumValue: root.to
        minimumValue: root.from
        stepSize: root.stepSize

        Accessible.onDecreaseAction: root.step(-1)
        Accessible.onIncreaseAction: root.step(1)
        Keys.onPressed: event => {
            switch (event.key) {
            case Qt.Key_Up:
            case Qt.Key_Right:
            case Qt.Key_Plus:
                root.step(1)
                break
            case Qt.Key_Down:
            case Qt.Key_Left:
            case Qt.Key_Minus:
                root.step(-1)
                break
            default:
                return
            }
            event.accepted = true
        }
        onRequested: value => root.modified(Stepping.nearest(value, root.from, root.to, root.stepSize))
    }

    Surface {
        anchors.fill: parent
        color: Theme.well
        radius: 9 - 9 % Theme.cornerStep
        stroke: Theme.stroke

        StepperHalf {
            direction: -1
            possible: Stepping.possible(root.value, root.from, root.to, root.stepSize, direction)
            text: root.text
            width: parent.width / 2

            onPressed: range.forceActiveFocus(Qt.MouseFocusReason)
            onStepped: root.step(direction)
        }

        StepperHalf {
            direction: 1
            possible: Stepping.possible(root.value, root.from, root.to, root.stepSize, direction)
            text: root.text
            width: parent.width / 2
            x: width

            onPressed: range.forceActiveFocus(Qt.MouseFocusReason)
            onStepped: root.step(direction)
        }

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.stroke
            height: parent.height
            width: 1
        }
    }

    FocusRing {
        target: range
        targetRadius: 9
    }
}
