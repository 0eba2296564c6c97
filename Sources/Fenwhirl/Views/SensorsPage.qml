pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Every temperature sensor, by name.
ScrollView {
    id: root

    required property ViewModels models
    readonly property real rowHeight: 24 + Theme.lineGrowth
    readonly property real rowSpacing: 8

    Column {
        spacing: 18

        PageTitle {
            subtitle: root.models.machine.sensorCountText
            title: qsTr("Capteurs")
            width: parent.width
        }

        Card {
            id: card
            visible: list.count > 0
            width: parent.width

            Item {
                implicitHeight: list.count * (root.rowHeight + root.rowSpacing) - root.rowSpacing

                // As high as the window at most and moved along with the page, so that of hundreds of sensors only
                // those that can be seen have rows.
                ListView {
                    id: list
                    readonly property real above: root.contentY - card.y - card.padding - root.padding

                    Accessible.name: qsTr("Capteurs")
                    Accessible.role: Accessible.List
                    contentY: y
                    height: Math.min(parent.height - y, root.height)
                    interactive: false
                    model: root.models.machine.sensors
                    reuseItems: true
                    spacing: root.rowSpacing
                    width: parent.width
                    y: Math.max(0, Math.min(above, parent.height - root.height))

                    delegate: SensorRow {
                        height: root.rowHeight
                        width: list.width
                    }
                }
            }
        }
    }
}
