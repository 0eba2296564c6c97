pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One card per fan, in up to five columns of equal width: as many as fit while the rows stay even. The card of a single fan
// is as wide as one of two. All cards of a row have the same height.
Grid {
    id: root

    required property MachineView machine
    readonly property real designedFor: width / Theme.textScale
    readonly property int count: machine.fans.count
    // How many columns fit: no card is narrower than 340, and they are 18 apart.
    readonly property int fitting: Math.max(1, Math.min(Math.floor((designedFor + 18) / 358), 5))
    readonly property int rowsNeeded: Math.ceil(count / fitting)
    readonly property real columnWidth: (width - (columns - 1) * columnSpacing) / columns

    columnSpacing: 18
    columns: count < 2 ? Math.min(fitting, 2) : Math.ceil(count / rowsNeeded)
    rowSpacing: 18
    visible: count > 0

    // The width of the card at `index`. Both edges lie on whole points, so that they are sharp.
    function widthAt(index: int): real {
        const left = index % columns * (columnWidth + columnSpacing)
        return Math.round(left + columnWidth) - Math.round(left)
    }

    // The height of the row that contains the card at `index`: that of its tallest card.
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
