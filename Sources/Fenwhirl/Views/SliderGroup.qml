import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// A slider under the text that says its value.
Column {
    id: root

    required property string text
    required property double value
    required property double from
    required property double to
    required property double stepSize

    signal moved(double value)

    spacing: 6

    ChangingText {
        content: root.text
        width: parent.width
    }

    Slider {
        from: root.from
        stepSize: root.stepSize
        text: root.text
        to: root.to
        value: root.value
        width: parent.width

        onMoved: value => root.moved(value)
    }
}
