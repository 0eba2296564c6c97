pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// An editor for a fan's temperature curve, with a handle for the temperature from which the speed rises and one for that of
// the maximum. It shows the values that its owner sets: dragging requests a value, and the owner then sets it.
//   startTemp, maxTemp    the two temperatures in °C; each has the steps and the range of its stepper
//   startText, maxText    what the handles set, for screen readers
//   lowestText, highestText  the fan's minimum and maximum
//   text, extent          accessible name and description of the drawing
//   now                   the temperature that drives the fan; NaN if unknown
//   limited               whether the limits of the main temperature apply to the fan
//   alertAt               where heat protection begins; NaN if it is off
//   protecting            whether heat protection drives the fan
//   signal startModified(double value), maxModified(double value)
// A press beside the handles does nothing: a stray click must not change a fan. Escape during a drag restores the value from
// before it.
Item {
    id: root

    required property double startTemp
    required property double maxTemp
    property double startFrom: 30
    property double startTo: 80
    property double maxFrom: 50
    property double maxTo: 100
    property double stepSize: 5
    property string startText: ""
    property string maxText: ""
    required property string lowestText
    required property string highestText
    property string text: ""
    property string extent: ""
    property double now: NaN
    property bool limited: false
    property double alertAt: NaN
    property bool protecting: false

    signal startModified(double value)
    signal maxModified(double value)

    readonly property real column: Math.round(44 * Theme.textScale)
    readonly property real plotTop: Math.round(8 * Theme.textScale)
    readonly property real plotHeight: Math.round(88 * Theme.textScale)
    readonly property real plotWidth: width - column
    // How far the numbers below the plot reach into the padding of the card. The tests that look for cut texts read it.
    readonly property real overhang: 6 * Theme.textScale
    // Half the edge of the area around a handle's centre in which a press grabs the handle.
    readonly property real reach: 16 + 4 * (Theme.textScale - 1)
    // The animated values that are drawn. The animation is shorter while the user moves a handle.
    property real shownStart: isFinite(startTemp) ? startTemp : startFrom
    property real shownMax: isFinite(maxTemp) ? maxTemp : maxTo
    property bool byHand: false
    property bool ready: false

    Accessible.description: extent
    Accessible.name: text
    Accessible.role: Accessible.Chart
    implicitHeight: Math.round(112 * Theme.textScale)
    implicitWidth: 349
    opacity: enabled ? 1 : 0.4

    Component.onCompleted: ready = true

    function setStart(value: double) {
        byHand = true
        startModified(value)
        byHand = false
    }

    function setMax(value: double) {
        byHand = true
        maxModified(value)
        byHand = false
    }

    Behavior on shownStart {
        enabled: root.ready
        NumberAnimation { duration: root.byHand ? Theme.pressDuration : Theme.pillDuration; easing.type: Easing.OutCubic }
    }

    Behavior on shownMax {
        enabled: root.ready
        NumberAnimation { duration: root.byHand ? Theme.pressDuration : Theme.pillDuration; easing.type: Easing.OutCubic }
    }

    FanCurve {
        id: curve
        alertAt: root.alertAt
        alertColor: Qt.alpha(Theme.hot, Theme.dark ? 0.14 : 0.12)
        fillColor: Theme.chartFill
        gridColor: Theme.stroke
        height: root.plotHeight + 2 * inset
        inkColor: Theme.text
        inset: 8
        limited: root.limited
        lineColor: Theme.accent
        maxTemp: root.shownMax
        mutedColor: Theme.muted
        now: root.now
        plotColor: Theme.well
        protecting: root.protecting
        startTemp: root.shownStart
        width: root.plotWidth + 2 * inset
        x: root.column - inset
        y: root.plotTop - inset
    }

    // The fan's minimum and maximum. A fan may report any number: one that is wider than the column is drawn smaller.
    Repeater {
        model: [root.highestText, root.lowestText]

        TabularText {
            required property int index
            required property string modelData

            Accessible.ignored: true
            color: Theme.muted
            scale: Math.min(1, (root.column - 4) / Math.max(width, 1))
            size: 11
            text: modelData
            transformOrigin: Item.Left
            y: root.plotTop + index * root.plotHeight - Math.round(height / 2)
        }
    }

    Repeater {
        model: curve.numbers(root.limited, root.alertAt, root.plotWidth, 18 * Theme.textScale)

        TabularText {
            id: number
            required property double modelData
            readonly property bool isAlert: modelData === root.alertAt
            readonly property real middle: root.column + curve.placeOf(modelData, root.plotWidth)

            Accessible.ignored: true
            color: isAlert ? Theme.text : Theme.muted
            opacity: root.hides(middle) ? 0 : 1
            size: 11
            text: Math.round(modelData).toString()
            weight: isAlert ? Font.DemiBold : Font.Normal
            x: Math.round(middle - width / 2)
            y: root.plotTop + root.plotHeight + Math.round(18 * Theme.textScale) - baselineOffset

            Behavior on opacity {
                NumberAnimation { duration: number.opacity > 0.5 ? Theme.pressDuration : Theme.hoverDuration }
            }
        }
    }

    Label {
        id: unit
        Accessible.ignored: true
        anchors.right: parent.right
        color: Theme.muted
        opacity: startBubble.shown && startBubble.touches(x, x + width, 6) ? 0 : 1
        size: 11
        text: "°C" // i18n-ignore: the unit's sign
        y: root.plotTop + root.plotHeight + Math.round(18 * Theme.textScale) - baselineOffset

        Behavior on opacity {
            NumberAnimation { duration: unit.opacity > 0.5 ? Theme.pressDuration : Theme.hoverDuration }
        }
    }

    // Whether the bubble of the lower handle covers a number of the axis with this centre.
    function hides(middle: real): bool {
        return startBubble.shown && Math.abs(middle - startBubble.aim) < 38 * Theme.textScale
    }

    Rectangle {
        color: Theme.accent
        height: root.plotHeight
        opacity: 0.55
        visible: area.held !== null
        width: 1
        x: area.held ? Math.round(area.held.x + area.held.width / 2 - 0.5) : 0
        y: root.plotTop
    }

    CurveHandle {
        id: start
        dragged: area.held === start
        from: root.startFrom
        hovered: area.under === start
        spokenValue: ValueLabelParts.value(root.startText)
        stepSize: root.stepSize
        text: ValueLabelParts.name(root.startText)
        to: root.startTo
        value: root.startTemp
        x: root.column + curve.placeOf(root.shownStart, root.plotWidth) - width / 2
        y: root.plotTop + root.plotHeight - height / 2
        z: area.last === start ? 1 : 0

        onDragCancelled: area.abandon()
        onModified: value => root.setStart(value)
    }

    CurveHandle {
        id: max
        dragged: area.held === max
        from: root.maxFrom
        hollow: curve.maximumWithoutEffect
        hovered: area.under === max
        spokenValue: ValueLabelParts.value(root.maxText)
        stepSize: root.stepSize
        text: ValueLabelParts.name(root.maxText)
        to: root.maxTo
        value: root.maxTemp
        x: root.column + curve.placeOf(root.shownMax, root.plotWidth) - width / 2
        y: root.plotTop - height / 2
        z: area.last === max ? 1 : 0

        onDragCancelled: area.abandon()
        onModified: value => root.setMax(value)
    }

    ValueBubble {
        id: startBubble
        aim: start.x + start.width / 2
        designWidth: 56
        atAxis: true
        shown: area.held === start || start.lately
        unit: "°C" // i18n-ignore: the unit's sign
        reading: Math.round(root.startTemp).toString()
        y: root.plotTop + root.plotHeight + Math.round(12 * Theme.textScale)
    }

    ValueBubble {
        aim: max.x + max.width / 2
        designWidth: 56
        shown: area.held === max || max.lately
        unit: "°C" // i18n-ignore: the unit's sign
        reading: Math.round(root.maxTemp).toString()
        y: root.plotTop - Math.round(13 * Theme.textScale) - height
    }

    MouseArea {
        id: area
        property CurveHandle held: null
        property CurveHandle last: null
        property real grip: 0
        property double before: 0
        readonly property CurveHandle under: held ?? (containsMouse && !pressed ? handleAt(mouseX, mouseY) : null)

        anchors.fill: curve
        anchors.margins: curve.inset - root.reach
        cursorShape: under ? Qt.SizeHorCursor : Qt.ArrowCursor
        hoverEnabled: true
        preventStealing: true

        onCanceled: held = null
        onPositionChanged: mouse => { if (held) follow(mouse.x) }
        onPressed: mouse => {
            const handle = handleAt(mouse.x, mouse.y)
            mouse.accepted = handle !== null
            if (!handle)
                return
            held = handle
            last = handle
            before = handle.value
            grip = mouse.x - middleOf(handle).x
            handle.forceActiveFocus(Qt.MouseFocusReason)
        }
        onReleased: held = null

        function middleOf(handle: CurveHandle): point {
            return mapFromItem(handle, handle.width / 2, handle.height / 2)
        }

        // The handle whose area contains the point: of two the nearer one, and at equal distance the one that was dragged
        // last.
        function handleAt(x: real, y: real): CurveHandle {
            let nearest = null
            let least = 0
            for (const handle of last === start ? [start, max] : [max, start]) {
                const middle = middleOf(handle)
                const across = Math.abs(x - middle.x)
                const along = Math.abs(y - middle.y)
                if (across > root.reach || along > root.reach)
                    continue
                const distance = Math.hypot(across, along)
                if (!nearest || distance < least) {
                    nearest = handle
                    least = distance
                }
            }
            return nearest
        }

        function follow(x: real) {
            const place = x - grip - root.reach
            const wanted = Stepping.nearest(curve.celsiusAt(place, root.plotWidth), held.from, held.to, held.stepSize)
            if (wanted !== held.value)
                held.modified(wanted)
        }

        function abandon() {
            const handle = held
            held = null
            if (handle && handle.value !== before)
                handle.modified(before)
        }
    }
}
