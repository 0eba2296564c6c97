pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// A row of choices of which one is selected, 34 high. Segments get the widths of their texts and share the rest equally. If
// the texts do not fit beside each other, the segments are stacked.
//   labels          one per segment
//   currentIndex    the selected one, -1 for none; set by the owner
//   text            what is being chosen, for screen readers
//   signal activated(int index)  a segment was chosen; the owner then changes currentIndex
// The control is one tab stop, the selected segment: Left and Right (Up and Down) choose the neighbour, Home and End the
// first and the last.
FocusScope {
    id: root

    required property var labels
    required property int currentIndex
    property string text: ""
    property list<double> textWidths: []
    readonly property real inset: 3
    readonly property real rowHeight: 28 + Theme.lineGrowth
    // Stacked if the texts do not fit beside each other even in the smaller size of 12.
    readonly property bool stacked: width > 0 && textSum * 12 / 13 + 2 * labels.length > width - 2 * inset
    readonly property list<rect> places: stacked
        ? FilledRows.places(Array(labels.length).fill(width - 2 * inset), width - 2 * inset, rowHeight, 0)
        : FilledRows.singleRow(textWidths, width - 2 * inset, height - 2 * inset)
    readonly property real textSum: FilledRows.sum(textWidths)
    // With less than 6 on each side of the texts, the texts are one pixel smaller.
    readonly property int labelSize: !stacked && width - 2 * inset - textSum < 12 * labels.length ? 12 : 13

    signal activated(int index)

    Accessible.name: text
    Accessible.role: Accessible.Grouping
    implicitHeight: (stacked ? labels.length : 1) * rowHeight + 2 * inset
    implicitWidth: Math.ceil(textSum) + 2 * inset + labels.length * 36
    opacity: enabled ? 1 : 0.4

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Right:
        case Qt.Key_Down:
            choose(Math.min(currentIndex + 1, labels.length - 1))
            break
        case Qt.Key_Left:
        case Qt.Key_Up:
            choose(Math.max(currentIndex - 1, 0))
            break
        case Qt.Key_Home:
            choose(0)
            break
        case Qt.Key_End:
            choose(labels.length - 1)
            break
        default:
            return
        }
        event.accepted = true
    }

    // The segment that has the focus, or would get it.
    readonly property int stop: currentIndex >= 0 && currentIndex < labels.length ? currentIndex : 0

    function choose(index: int) {
        if (index !== currentIndex && index >= 0 && index < labels.length)
            activated(index)
    }

    function focusStop() {
        if (activeFocus)
            segments.itemAt(stop)?.forceActiveFocus(Qt.TabFocusReason)
    }

    onActiveFocusChanged: focusStop()
    onStopChanged: focusStop()

    function measure() {
        const widths = []
        for (let i = 0; i < segments.count; ++i)
            widths.push((segments.itemAt(i) as Segment)?.textWidth ?? 0)
        textWidths = widths
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.well
        radius: 11 - 11 % Theme.cornerStep
    }

    // The segments between which the selection moves, and its progress. A Behavior on the position would also lag behind
    // when the control is resized.
    property int previousIndex: -1
    property int shownIndex: -1
    property real progress: 1

    Component.onCompleted: shownIndex = currentIndex
    onCurrentIndexChanged: {
        previousIndex = places[shownIndex] ? shownIndex : currentIndex
        shownIndex = currentIndex
        slide.restart()
    }

    NumberAnimation {
        id: slide
        duration: Theme.pillDuration
        easing.type: Easing.OutCubic
        from: 0
        property: "progress"
        target: root
        to: 1
    }

    Rectangle {
        objectName: "pill"
        readonly property rect from: root.places[root.previousIndex] ?? to
        readonly property rect to: root.places[root.shownIndex] ?? Qt.rect(0, 0, 0, 0)

        color: Theme.accent
        height: to.height
        radius: 8
        visible: root.currentIndex >= 0 && root.currentIndex < root.labels.length
        width: from.width + (to.width - from.width) * root.progress
        x: root.inset + from.x + (to.x - from.x) * root.progress
        y: root.inset + from.y + (to.y - from.y) * root.progress
    }

    Repeater {
        id: segments
        model: root.labels.length
        onCountChanged: root.measure()

        Segment {
            required property int index
            readonly property rect place: root.places[index] ?? Qt.rect(0, 0, 0, 0)

            height: place.height
            labelSize: root.labelSize
            selected: index === root.currentIndex
            tabStop: index === root.stop
            text: root.labels[index] ?? ""
            width: place.width
            x: root.inset + place.x
            y: root.inset + place.y

            onClicked: {
                root.forceActiveFocus(Qt.MouseFocusReason)
                root.choose(index)
            }
            onTextWidthChanged: root.measure()
        }
    }

    FocusRing {
        target: root
        targetRadius: 11
    }
}
