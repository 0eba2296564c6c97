import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The part of a fan card for the mode in which the speed follows a temperature.
Column {
    id: root

    required property FanRow fan
    required property SensorChoices choices

    spacing: 14

    Item {
        readonly property bool tight: Math.ceil(metrics.advanceWidth) + 12 + picker.wantedWidth > width

        height: picker.height
        width: parent.width

        TextMetrics {
            id: metrics
            font.pixelSize: Math.round(13 * Theme.textScale)
            text: caption.text
        }

        Label {
            id: caption
            anchors.verticalCenter: parent.verticalCenter
            size: parent.tight ? 12 : 13
            text: qsTr("Capteur")
        }

        PopupButton {
            id: picker
            anchors.left: caption.right
            anchors.leftMargin: parent.tight ? 8 : 12
            anchors.right: parent.right
            currentIndex: root.fan.sensorChoice
            labels: root.choices.names
            text: qsTr("Capteur")
            tight: parent.tight

            onActivated: index => root.fan.sensorChoice = index
        }
    }

    Column {
        // Computed from the widest texts rather than the current ones: a step must not change the size of the texts.
        readonly property int size: Math.max(start.wantedWidth, max.wantedWidth) > width ? 12 : 13

        spacing: 10
        width: parent.width

        StepperRow {
            id: start
            from: 30
            size: parent.size
            stepSize: 5
            text: root.fan.startText
            to: 80
            value: root.fan.startTemp
            width: parent.width

            onModified: value => root.fan.startTemp = value
        }

        StepperRow {
            id: max
            from: 50
            size: parent.size
            stepSize: 5
            text: root.fan.maxText
            to: 100
            value: root.fan.maxTemp
            widestText: root.fan.widestMaxText
            width: parent.width

            onModified: value => root.fan.maxTemp = value
        }
    }

    CurveEditor {
        alertAt: root.fan.alertAt
        extent: root.fan.rangeText
        highestText: root.fan.highestText
        limited: root.fan.followsMainTemperature
        lowestText: root.fan.lowestText
        maxTemp: root.fan.maxTemp
        maxText: root.fan.maxText
        now: root.fan.drivingTemperature
        protecting: root.fan.protecting
        startTemp: root.fan.startTemp
        startText: root.fan.startText
        text: qsTr("Selon un capteur")
        width: parent.width

        onMaxModified: value => root.fan.maxTemp = value
        onStartModified: value => root.fan.startTemp = value
    }
}
