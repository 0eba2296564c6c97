import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One fan in the status item's panel. Moving the slider makes the fan run at that speed.
Column {
    id: root

    required property FanRow fan

    spacing: 8

    Item {
        height: speed.height
        width: parent.width

        ElidedLabel {
            anchors.baseline: speed.baseline
            anchors.left: parent.left
            anchors.right: speed.left
            anchors.rightMargin: 12
            text: root.fan.name
        }

        TabularText {
            id: speed
            anchors.right: unit.left
            anchors.rightMargin: 4
            size: 15
            text: root.fan.speedText
            weight: Font.DemiBold
        }

        Label {
            id: unit
            anchors.baseline: speed.baseline
            anchors.right: parent.right
            color: Theme.muted
            size: 12
            text: qsTr("tr/min")
        }
    }

    Slider {
        from: root.fan.lowestRPM
        stepSize: 50
        text: root.fan.name
        to: root.fan.highestRPM
        value: root.fan.panelRPM
        width: parent.width

        onMoved: value => root.fan.panelRPM = value
    }
}
