pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One card per fan in equal columns: up to five, as many as fit and leave the rows even; a single fan has the width of one
// of two. The cards of a row are equally high.
Grid {
    id: root

    required property MachineView machine
    readonly property real designedFor: width / Theme.textScale
    readonly property int count: machine.fans.count
    // No card is narrower than 340.
    readonly property int fitting: Math.max(1, Math.min(Math.floor((designedFor + 18) / 358), 5))
    readonly property int rowsNeeded: Math.ceil(count / fitting)
    readonly property real columnWidth: (width - (columns - 1) * columnSpacing) / columns

    columnSpacing: 18
    columns: count < 2 ? Math.min(fitting, 2) : Math.ceil(count / rowsNeeded)
    rowSpacing: 18
    visible: count > 0

    // Of the column that holds the card of that number: from whole point to whole point, so that its edges are sharp.
    function widthAt(index: int): real {
        const left = index % columns * (columnWidth + columnSpacing)
        return Math.round(left + columnWidth) - Math.round(left)
    }

    // Of the row that holds the card of that number.
    function rowHeight(index: int): real {
        const first = index - index % columns
        let highest = 0
        for (let i = first; i < Math.min(first + columns, cards.count); ++i)
            highest = Math.max(highest, cards.itemAt(i)?.implicitHeight ?? 0)
        return highest
    }

    Repeater {
        id: cards
        model: root.machine.fans

        FanCard {
            required property int index

            choices: root.machine.sensorChoices
            height: root.rowHeight(index)
            width: root.widthAt(index)
        }
    }
}
