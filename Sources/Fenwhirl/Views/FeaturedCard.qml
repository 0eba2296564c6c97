import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The few sensors that matter most.
Card {
    id: root

    required property SensorList sensors

    Column {
        spacing: 7

        Label {
            font.weight: Font.DemiBold
            size: 14
            text: qsTr("Capteurs")
            width: parent.width
        }

        Column {
            width: parent.width

            Repeater {
                model: root.sensors

                SensorRow {
                    height: 33 + Theme.lineGrowth
                    width: parent.width
                }
            }
        }
    }
}
