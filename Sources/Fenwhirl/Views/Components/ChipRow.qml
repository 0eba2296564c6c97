pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// Chips in rows that fill the width: the chips of a row share the width that their texts leave over.
//   labels          one per chip
//   currentIndex    the selected chip, -1 for none; set by the owner
//   text            what is being chosen, for screen readers
//   signal activated(index)  a chip was chosen; the owner then changes currentIndex
// The row is one tab stop, the selected chip or else the first: the arrow keys choose its neighbour, Space and Return the
// chip itself.
Item {
    id: root

    required property var labels
    required property int currentIndex
    property string text: ""
    property real spacing: 6
    readonly property int stop: currentIndex >= 0 && currentIndex < labels.length ? currentIndex : 0
    readonly property list<rect> places: FilledRows.places(naturalWidths, width, 28 + Theme.lineGrowth, spacing)
    property list<double> naturalWidths: []

    signal activated(int index)

    Accessible.name: text
    Accessible.role: Accessible.Grouping
    implicitHeight: FilledRows.height(places)
    implicitWidth: 308

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Right:
            event.accepted = moveFocus(1, 0)
            break
        case Qt.Key_Left:
            event.accepted = moveFocus(-1, 0)
            break
        case Qt.Key_Down:
            event.accepted = moveFocus(0, 1)
            break
        case Qt.Key_Up:
            event.accepted = moveFocus(0, -1)
            break
        default:
            event.accepted = false
        }
    }

    // Chooses the chip in that direction. Returns false if there is none: the page may then scroll with the key.
    function moveFocus(columns: int, rows: int): bool {
        for (let i = 0; i < chips.count; ++i) {
            if (!chips.itemAt(i)?.activeFocus)
                continue
            const next = FilledRows.neighbour(places, i, columns, rows)
            if (next === i)
                return false
            activated(next)
            chips.itemAt(next).forceActiveFocus(Qt.TabFocusReason)
            return true
        }
        return false
    }

    function measure() {
        const widths = []
        for (let i = 0; i < chips.count; ++i)
            widths.push((chips.itemAt(i) as Chip)?.naturalWidth ?? 0)
        naturalWidths = widths
    }

    Repeater {
        id: chips
        model: root.labels.length
        onCountChanged: root.measure()

        Chip {
            required property int index
            readonly property rect place: root.places[index] ?? Qt.rect(0, 0, 0, 0)

            height: place.height
            selected: index === root.currentIndex
            tabStop: index === root.stop
            text: root.labels[index] ?? ""
            width: place.width
            x: place.x
            y: place.y

            onClicked: root.activated(index)
            onNaturalWidthChanged: root.measure()
        }
    }
}
