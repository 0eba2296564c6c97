import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// A slider below the sentence that states its value.
Column {
    id: root

    required property string text
    required property double value
    required property double from
    required property double to
    required property double stepSize
    property string valueText: ""
    property string unit: ""
    property string widestText: valueText

    signal moved(double value)

    spacing: 6

    ChangingText {
        id: sentence
        // A sentence that the bubble would partly cover fades as a whole.
        readonly property bool covered: slider.bubble.shown && slider.bubble.touches(0, Math.min(implicitWidth, width), 4)

        content: root.text
        opacity: covered ? 0.2 : 1
        width: parent.width

        Behavior on opacity {
            NumberAnimation { duration: sentence.covered ? Theme.pressDuration : Theme.hoverDuration }
        }
    }

    Slider {
        id: slider
        from: root.from
        spokenValue: ValueLabelParts.value(root.text)
        stepSize: root.stepSize
        text: ValueLabelParts.name(root.text)
        to: root.to
        unit: root.unit
        value: root.value
        valueText: root.valueText
        widestText: root.widestText
        width: parent.width

        onMoved: value => root.moved(value)
    }
}
