import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// A text that states a value, and the stepper that changes it.
//   size         size of the text
//   widestText   the text with the widest of the possible values
//   wantedWidth  the width needed to fit on one line in the usual size, whatever the value
Item {
    id: root

    required property string text
    required property double value
    required property double from
    required property double to
    required property double stepSize
    property int size: 13
    property string widestText: text
    readonly property real wantedWidth: Math.ceil(metrics.advanceWidth) + 12 + stepper.width

    signal modified(double value)

    implicitHeight: Math.max(label.implicitHeight, stepper.implicitHeight)

    ChangingText {
        id: label
        anchors.left: parent.left
        anchors.right: stepper.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        content: root.text
        size: root.size
    }

    // Measured with zeros, because every digit is drawn as wide as a zero.
    TextMetrics {
        id: metrics
        font.pixelSize: Math.round(13 * Theme.textScale)
        text: DrawnText.of(root.widestText.replace(/[0-9]/g, "0"))
    }

    Stepper {
        id: stepper
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        from: root.from
        spokenValue: ValueLabelParts.value(root.text)
        stepSize: root.stepSize
        text: ValueLabelParts.name(root.text)
        to: root.to
        value: root.value

        onModified: value => root.modified(value)
    }
}
