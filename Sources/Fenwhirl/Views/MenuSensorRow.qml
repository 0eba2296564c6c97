import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One temperature in the status item's panel.
Item {
    id: root

    required property string name
    required property string temperature

    Accessible.name: name + " " + temperature
    Accessible.role: Accessible.ListItem
    // Less than the line height of the large digits, so that the digits' own height, not their leading, separates the rows.
    implicitHeight: Math.round(20 * Theme.textScale)

    ElidedLabel {
        Accessible.ignored: true
        anchors.baseline: value.baseline
        anchors.left: parent.left
        anchors.right: value.left
        anchors.rightMargin: 12
        color: Theme.muted
        size: 11
        text: root.name
    }

    TabularText {
        id: value
        Accessible.ignored: true
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        size: 18
        text: root.temperature
        weight: Font.Bold
    }
}
