pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Every temperature sensor, by name.
PageFrame {
    id: root

    required property ViewModels models
    readonly property real rowHeight: 24 + Theme.lineGrowth
    readonly property real rowSpacing: 8
    readonly property int count: models.machine.sensors.count

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

            // Columns are filled downwards, one after the other, as in a list of files.
            Item {
                id: list
                readonly property real gap: 40
                readonly property int fitting: Math.floor((width / Theme.textScale + gap) / (400 + gap))
                readonly property int columns: Math.max(1, Math.min(fitting, 3, Math.floor(root.count / 12)))
                readonly property int rows: Math.ceil(root.count / columns)
                readonly property real columnWidth: (width - (columns - 1) * gap) / columns

                Accessible.name: qsTr("Capteurs")
                Accessible.role: Accessible.List
                implicitHeight: rows * (root.rowHeight + root.rowSpacing) - root.rowSpacing

                Repeater {
                    model: list.columns

                    // As high as the window at most and moved along with the page, so that of hundreds of sensors only
                    // those that can be seen have rows.
                    ListView {
                        id: column
                        required property int index
                        readonly property real wantedX: index * (list.columnWidth + list.gap)
                        readonly property real above: root.contentY - card.y - card.padding - root.padding

                        Accessible.ignored: true
                        contentY: y
                        height: Math.min(parent.height - y, root.height)
                        interactive: false
                        reuseItems: true
                        spacing: root.rowSpacing
                        width: Math.round(wantedX + list.columnWidth) - x
                        x: Math.round(wantedX)
                        y: Math.max(0, Math.min(above, parent.height - root.height))

                        model: RowSlice {
                            first: column.index * list.rows
                            rows: list.rows
                            sourceModel: root.models.machine.sensors
                        }
                        delegate: SensorRow {
                            height: root.rowHeight
                            width: column.width

                            // A row that waits to be used again is not drawn, but a screen reader would find it.
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
