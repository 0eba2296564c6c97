import QtQuick
import Fenwhirl.Components

// A small floating label with the value of what is pointed at or dragged. Only its opacity is animated; value and position
// follow at once. Screen readers ignore it: the control that it belongs to has the value.
//   shown        whether it is visible
//   reading      semibold, digits of equal width
//   unit         after the value, in unitColor
//   time         before the value, muted; takes no space when empty
//   designWidth  width as designed, larger with the texts; it does not follow the value, so it must fit the widest one
//   widestTime, widestValue  texts that may need more than that in the format of a region or language
//   atAxis       whether it lies on an axis: 20 high instead of 22
//   aim          the x coordinate in its parent on which it is centred
//   leftmost, rightmost  the x coordinates in its parent between which it stays
// Its owner sets y.
Item {
    id: root

    property bool shown: false
    required property string reading
    required property string unit
    property color unitColor: Theme.text
    property string time: ""
    property real designWidth: 96
    property string widestTime: time
    property string widestValue: reading
    property bool atAxis: false
    property real aim: 0
    property real leftmost: 0
    property real rightmost: parent ? parent.width : 0

    readonly property real needed: cells.width - clock.width - number.width + 16
                                   + Math.max(clock.width, Math.ceil(timeRoom.advanceWidth))
                                   + Math.max(number.width, Math.ceil(valueRoom.advanceWidth))

    // Whether it overlaps the span between two x coordinates of its parent, or is nearer to it than `distance`.
    function touches(from: real, to: real, distance: real): bool {
        return x < to + distance && x + width > from - distance
    }

    Accessible.ignored: true
    height: Math.round((atAxis ? 20 : 22) + 16 * (Theme.textScale - 1))
    opacity: shown ? 1 : 0
    visible: opacity > 0
    width: Math.max(Math.round(designWidth * Theme.textScale), needed)
    x: Math.round(Math.max(leftmost, Math.min(aim - width / 2, rightmost - width)))
    z: 2

    Behavior on opacity {
        NumberAnimation { duration: root.shown ? Theme.pressDuration : Theme.hoverDuration; easing.type: Easing.OutCubic }
    }

    TextMetrics {
        id: timeRoom
        font.pixelSize: Math.round(12 * Theme.textScale)
        text: root.widestTime
    }

    TextMetrics {
        id: valueRoom
        font.pixelSize: timeRoom.font.pixelSize
        font.weight: Font.DemiBold
        text: root.widestValue
    }

    Surface {
        anchors.fill: parent
        color: Theme.popup
        radius: 7 - 7 % Theme.cornerStep
        stroke: Theme.stroke

        SoftShadow {
            blur: 8
            color: Theme.bubbleShadow
            height: parent.height + 2 * blur
            radius: 7 - 7 % Theme.cornerStep
            width: parent.width + 2 * blur
            x: -blur
            y: 2 - blur
            z: -1
        }
    }

    Row {
        id: cells
        anchors.verticalCenter: parent.verticalCenter
        x: Math.round((parent.width - width) / 2)

        TabularText {
            id: clock
            Accessible.ignored: true
            color: Theme.muted
            objectName: "time"
            size: 12
            text: root.time
        }

        Item {
            height: 1
            width: root.time === "" ? 0 : Math.round(7 * Theme.textScale)
        }

        TabularText {
            id: number
            Accessible.ignored: true
            objectName: "value"
            size: 12
            text: root.reading
            weight: Font.DemiBold
        }

        Label {
            Accessible.ignored: true
            color: root.unitColor
            elide: Text.ElideNone
            leftPadding: Math.round(3 * Theme.textScale)
            objectName: "unit"
            size: 12
            text: root.unit
        }
    }
}
