import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// A text that says a value, and the stepper that changes it.
Item {
    id: root

    required property string text
    required property double value
    required property double from
    required property double to
    required property double stepSize

    signal modified(double value)

    implicitHeight: Math.max(label.implicitHeight, stepper.implicitHeight)

    ChangingText {
        id: label
        anchors.left: parent.left
        anchors.right: stepper.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        content: root.text
    }

    Stepper {
        id: stepper
        detail: ValueWords.unit(root.text)
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        from: root.from
        stepSize: root.stepSize
        text: ValueWords.name(root.text)
        to: root.to
        value: root.value

        onModified: value => root.modified(value)
    }
}
