pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The few sensors that matter most. Where their bars are long enough, a scale makes them a bar chart.
Card {
    id: root

    required property SensorList sensors
    readonly property SensorRow firstRow: rows.count > 0 ? rows.itemAt(0) as SensorRow : null
    readonly property real barLeft: firstRow ? firstRow.barLeft : 0
    readonly property real barWidth: firstRow ? firstRow.barWidth : 0
    readonly property bool hasScale: barWidth >= 360 * Theme.textScale
    // The number of intervals on the scale, which runs from 0 to 100 °C.
    readonly property int scaleSteps: 5

    Column {
        spacing: 7

        Item {
            height: title.height
            width: parent.width

            Label {
                id: title
                font.weight: Font.DemiBold
                size: 14
                text: qsTr("Capteurs")
                width: Math.min(implicitWidth, parent.width)
            }

            Repeater {
                model: root.hasScale ? root.scaleSteps + 1 : 0

                TabularText {
                    required property int index

                    Accessible.ignored: true
                    anchors.verticalCenter: title.verticalCenter
                    color: Theme.muted
                    size: 11
                    text: 100 / root.scaleSteps * index
                    x: Math.round(root.barLeft + root.barWidth * index / root.scaleSteps - width / 2)
                }
            }

            Label {
                Accessible.ignored: true
                anchors.right: parent.right
                anchors.verticalCenter: title.verticalCenter
                color: Theme.muted
                size: 11
                text: "°C" // i18n-ignore: the unit's sign
                visible: root.hasScale
            }
        }

        Item {
            Accessible.name: qsTr("Capteurs")
            Accessible.role: Accessible.List
            height: list.height
            width: parent.width

            Repeater {
                model: root.hasScale ? root.scaleSteps + 1 : 0

                Rectangle {
                    required property int index

                    color: Theme.stroke
                    height: list.height
                    width: 1
                    x: Math.round(root.barLeft + (root.barWidth - width) * index / root.scaleSteps)
                }
            }

            Column {
                id: list
                width: parent.width

                Repeater {
                    id: rows
                    model: root.sensors

                    SensorRow {
                        height: 33 + Theme.lineGrowth
                        width: parent.width
                    }
                }
            }
        }
    }
}
