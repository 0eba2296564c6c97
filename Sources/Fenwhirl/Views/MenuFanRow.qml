import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One fan in the status item's panel. Moving the slider makes the fan run at that speed.
Column {
    id: root

    required property FanRow fan

    spacing: 8

    Item {
        id: line
        height: speed.height
        width: parent.width

        // Whether the bubble above the knob overlaps what lies between the two x coordinates.
        function isCovered(from: real, to: real): bool {
            return slider.bubble.shown && slider.bubble.touches(from, to, 4)
        }

        ModeButton {
            anchors.verticalCenter: parent.verticalCenter
            description: root.fan.name + ", " + (root.fan.mode === 1 ? qsTr("Vitesse fixe") : qsTr("Selon un capteur"))
            inForce: root.fan.driven
            mode: root.fan.mode
            text: qsTr("Auto")
            x: (Theme.symbolSize - width) / 2

            onClicked: {
                slider.forceActiveFocus(Qt.OtherFocusReason) // first, because the button stops being a tab stop
                root.fan.mode = 0
            }
        }

        ElidedLabel {
            id: name
            anchors.baseline: speed.baseline
            anchors.left: parent.left
            anchors.leftMargin: Theme.symbolSize + 8
            anchors.right: speed.left
            anchors.rightMargin: 12
            opacity: line.isCovered(x, x + Math.min(width, implicitWidth)) ? 0.2 : 1
            text: root.fan.name

            Behavior on opacity {
                NumberAnimation { duration: slider.bubble.shown ? Theme.pressDuration : Theme.hoverDuration }
            }
        }

        TabularText {
            id: speed
            anchors.right: unit.left
            anchors.rightMargin: 4
            opacity: line.isCovered(x, unit.x + unit.width) ? 0.2 : 1
            size: 15
            text: root.fan.speedText
            weight: Font.DemiBold

            Behavior on opacity {
                NumberAnimation { duration: slider.bubble.shown ? Theme.pressDuration : Theme.hoverDuration }
            }
        }

        Label {
            id: unit
            anchors.baseline: speed.baseline
            anchors.right: parent.right
            color: Theme.muted
            opacity: speed.opacity
            size: 12
            text: qsTr("tr/min")
        }
    }

    // The measured speed, where the slider shows another one. It does not change while the slider has the focus, because
    // screen readers announce every change of the focused control.
    property string measuredSpeed

    Binding on measuredSpeed {
        restoreMode: Binding.RestoreNone
        value: root.fan.mode === 1 ? speed.text + " " + unit.text : ""
        when: !slider.activeFocus
    }

    Slider {
        id: slider
        detail: root.measuredSpeed
        from: root.fan.lowestRPM
        measured: root.fan.mode !== 1 // otherwise it shows the constant speed
        spokenValue: root.fan.panelSpeedText + " " + unit.text
        stepSize: 50
        text: root.fan.name
        to: root.fan.highestRPM
        unit: qsTr("tr/min")
        value: root.fan.panelRPM
        valueText: root.fan.panelSpeedText
        widestText: root.fan.highestText
        width: parent.width

        onMoved: value => root.fan.panelRPM = value
    }
}
