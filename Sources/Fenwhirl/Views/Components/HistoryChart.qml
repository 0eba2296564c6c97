pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// A LineChart with captions under its two ends and a cursor that marks a reading. The cursor follows the pointer. While the
// chart has the focus, keys move it: Left and Right by one sample, with Shift or the Page keys by thirty, Home and End to
// the ends; Escape hides it.
//   values        the temperatures, oldest first
//   times         when they were read, in milliseconds since the Unix epoch
//   threshold     a temperature to be marked; NaN for none
//   startCaption  under the left end
//   endCaption    under the right end
//   plotHeight    140 by default
//   surface       colour of the surface below the chart
//   description   accessible name of the chart
//   extent        what a screen reader says while no reading is marked: the range of the values
Item {
    id: root

    required property list<double> values
    required property string startCaption
    required property string endCaption
    property list<double> times: []
    property real threshold: NaN
    property string description: ""
    property string extent: ""
    property real plotHeight: 140
    property color surface: Theme.card
    readonly property real column: plot.hasLine ? plot.column : 0
    // Created when a reading is marked for the first time, so that it does not slow down the start.
    property ValueBubble bubble: null

    Accessible.description: cursor.spoken !== "" ? cursor.spoken : extent
    Accessible.name: description
    Accessible.role: Accessible.Chart
    activeFocusOnTab: plot.hasLine || activeFocus
    implicitHeight: plotHeight + 6 + start.height
    implicitWidth: 300

    Keys.onPressed: event => {
        const far = event.modifiers & Qt.ShiftModifier ? 30 : 1
        switch (event.key) {
        case Qt.Key_Left:
            cursor.moveBy(-far)
            break
        case Qt.Key_Right:
            cursor.moveBy(far)
            break
        case Qt.Key_PageUp:
            cursor.moveBy(-30)
            break
        case Qt.Key_PageDown:
            cursor.moveBy(30)
            break
        case Qt.Key_Home:
            cursor.moveBy(-values.length)
            break
        case Qt.Key_End:
            cursor.moveBy(values.length)
            break
        case Qt.Key_Escape:
            if (!cursor.reading)
                return
            cursor.dismiss()
            break
        default:
            return
        }
        event.accepted = true
    }
    onActiveFocusChanged: {
        if (activeFocus)
            cursor.enter()
        else
            cursor.release()
    }

    // Whether the bubble touches a caption, which is then hidden as a whole instead of being half covered.
    function isCovered(caption: Item): bool {
        return bubble !== null && bubble.shown && bubble.touches(caption.x, caption.x + caption.width, 6)
    }

    HoverHandler {
        onHoveredChanged: { if (!hovered) cursor.leave() }
        onPointChanged: { if (hovered) cursor.pointTo(point.position.x) }
    }

    PointHandler {
        acceptedDevices: PointerDevice.TouchScreen

        onActiveChanged: { if (!active) cursor.leave() }
        onPointChanged: { if (active) cursor.pointTo(point.position.x) }
    }

    LineChart {
        id: plot
        column: Math.round(24 * Theme.textScale)
        endDot: !cursor.coversEndDot
        fillColor: Theme.chartFill
        gridColor: Theme.stroke
        height: root.plotHeight + 2 * inset
        inset: Math.round(8 * Theme.textScale)
        lineColor: Theme.accent
        numberColor: Theme.muted
        surfaceColor: root.surface
        textScale: Theme.textScale
        threshold: root.threshold
        thresholdColor: Theme.hotLine
        thresholdNumberColor: Theme.text
        values: root.values
        width: root.width + 2 * inset
        x: -inset
        y: -inset
    }

    Label {
        id: start
        objectName: "startCaption"
        color: Theme.muted
        opacity: root.isCovered(this) ? 0 : 1
        size: 12
        text: root.startCaption
        x: root.column
        y: root.plotHeight + 6

        Behavior on opacity {
            NumberAnimation { duration: Theme.hoverDuration }
        }
    }

    Label {
        objectName: "endCaption"
        anchors.right: parent.right
        color: Theme.muted
        opacity: root.isCovered(this) ? 0 : 1
        size: 12
        text: root.endCaption
        y: root.plotHeight + 6

        Behavior on opacity {
            NumberAnimation { duration: Theme.hoverDuration }
        }
    }

    ChartCursor {
        id: cursor
        chart: plot
        dotColor: Theme.accent
        lineColor: Theme.readingLine
        objectName: ring ? "focusRing" : "cursor"
        opacity: 0
        ring: byKeyboard && root.activeFocus && KeyboardFocus.active
        surfaceColor: root.surface
        times: root.times
        visible: opacity > 0

        // The cursor appears at once and fades out.
        onMoved: {
            if (reading) {
                bubbles.model = 1
                fading.stop()
                opacity = 1
            } else {
                fading.restart()
            }
        }

        NumberAnimation {
            id: fading
            duration: Theme.hoverDuration
            property: "opacity"
            target: cursor
            to: 0
        }
    }

    Repeater {
        id: bubbles
        model: 0

        ValueBubble {
            aim: cursor.at
            atAxis: true
            leftmost: root.column - Math.round(10 * Theme.textScale)
            rightmost: root.width + 6
            shown: cursor.reading
            time: cursor.timeText
            unit: "°C" // i18n-ignore: the unit's sign
            reading: cursor.degreesText
            widestTime: cursor.widestTime
            widestValue: "100"
            y: root.plotHeight + 4

            Component.onCompleted: root.bubble = this
        }
    }
}
