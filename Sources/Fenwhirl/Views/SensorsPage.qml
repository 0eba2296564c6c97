pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The sensors page: every temperature sensor, sorted by name. The list is one tab stop, in which the arrow keys move from
// row to row.
PageFrame {
    id: root

    required property ViewModels models
    readonly property real rowHeight: 24 + Theme.lineGrowth
    readonly property real rowSpacing: 8
    readonly property int count: models.machine.sensors.count

    // An empty page has nothing that the keyboard could reach.
    Component.onCompleted: {
        if (count === 0)
            Announcer.say(models.machine.sensorCountText)
    }

    function revealRow(row: int) {
        const top = card.y + card.padding + padding + row * (rowHeight + rowSpacing)
        revealSpan(top, rowHeight)
    }

    Column {
        spacing: 18

        PageTitle {
            subtitle: root.models.machine.sensorCountText
            title: qsTr("Capteurs")
            width: parent.width
        }

        Card {
            id: card
            visible: root.count > 0
            width: parent.width

            // Columns are filled from top to bottom, one after the other, as in a list of files.
            FocusScope {
                id: list
                property int currentIndex: 0 // the row that was last given the focus, and may have moved since
                readonly property real gap: 40
                readonly property int fitting: Math.floor((width / Theme.textScale + gap) / (400 + gap))
                readonly property int columns: Math.max(1, Math.min(fitting, 3, Math.floor(root.count / 12)))
                readonly property int rows: Math.ceil(root.count / columns)
                readonly property real columnWidth: (width - (columns - 1) * gap) / columns

                Accessible.name: qsTr("Capteurs")
                Accessible.role: Accessible.List
                activeFocusOnTab: true
                implicitHeight: rows * (root.rowHeight + root.rowSpacing) - root.rowSpacing
                Keys.onPressed: event => {
                    const here = focusedRow()
                    const goals = {
                        [Qt.Key_Down]: here + 1, [Qt.Key_Up]: here - 1, [Qt.Key_Right]: here + rows,
                        [Qt.Key_Left]: here - rows, [Qt.Key_Home]: 0, [Qt.Key_End]: root.count - 1,
                    }
                    event.accepted = event.key in goals
                    if (event.accepted)
                        goTo(goals[event.key])
                }
                onColumnsChanged: settle.restart()

                // Scrolls the row into view before it gives it the focus, because only then is its delegate sure to exist.
                function goTo(index: int) {
                    if (index < 0 || index >= root.count)
                        return
                    if (activeFocus)
                        root.revealRow(index % rows)
                    currentIndex = index
                    const view = columnViews.itemAt(Math.floor(index / rows))
                    view.currentIndex = index % rows
                    view.focus = true
                }

                // The views keep the focus with its sensor while others come and go above it.
                function focusedRow(): int {
                    for (let i = 0; i < columnViews.count; ++i) {
                        const view = columnViews.itemAt(i)
                        view?.forceLayout() // a view learns of rows that came or went only when it is laid out
                        if (view?.activeFocus && view.currentIndex >= 0)
                            return view.first + view.currentIndex
                    }
                    return Math.min(currentIndex, root.count - 1)
                }

                Timer { // runs once the new columns exist
                    id: settle
                    interval: 0

                    onTriggered: list.goTo(Math.min(list.currentIndex, root.count - 1))
                }

                Repeater {
                    id: columnViews
                    model: list.columns

                    // At most as high as the window, and moved along with the page, so that of hundreds of sensors only the
                    // visible ones have delegates.
                    ListView {
                        id: column
                        required property int index
                        readonly property real wantedX: index * (list.columnWidth + list.gap)
                        readonly property real above: root.contentY - card.y - card.padding - root.padding

                        readonly property int first: index * list.rows

                        Accessible.ignored: true
                        // All rows have delegates while the list has the focus, so that each knows its position among them.
                        cacheBuffer: list.activeFocus ? 100000 : 0
                        focus: index === 0
                        height: Math.min(parent.height - y, root.height)
                        highlightFollowsCurrentItem: false
                        interactive: false
                        keyNavigationEnabled: false
                        reuseItems: true
                        spacing: root.rowSpacing
                        width: Math.round(wantedX + list.columnWidth) - x
                        x: Math.round(wantedX)
                        y: Math.max(0, Math.min(above, parent.height - root.height))

                        // A single column needs no slice of the list.
                        model: list.columns > 1 ? slice : root.models.machine.sensors

                        RowSlice {
                            id: slice
                            first: column.first
                            rows: list.rows
                            sourceModel: list.columns > 1 ? root.models.machine.sensors : null
                        }

                        // Only once it is complete: until then the view scrolls to its top by itself. The origin moves when
                        // rows come or go above the visible ones.
                        Component.onCompleted: {
                            contentY = Qt.binding(() => originY + y)
                            if (index > 0)
                                currentIndex = -1
                        }

                        delegate: SensorRow {
                            height: root.rowHeight
                            takesFocus: true
                            width: column.width

                            // A pooled delegate is not drawn, but a screen reader would still find it.
                            ListView.onPooled: visible = false
                            ListView.onReused: visible = true
                        }
                    }
                }

                Repeater {
                    model: list.columns - 1

                    Rectangle {
                        required property int index

                        color: Theme.stroke
                        height: list.height
                        width: 1
                        x: Math.round((index + 1) * (list.columnWidth + list.gap) - list.gap / 2)
                    }
                }
            }
        }
    }
}
