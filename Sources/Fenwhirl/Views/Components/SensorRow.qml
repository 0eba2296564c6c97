import QtQuick
import Fenwhirl.Components

// One sensor: name, bar, temperature.
//   name         in a column of 150, cut at the right end with the whole name as a tooltip
//   fraction     filled share of the bar, 0…1
//   hot          whether the bar has the warning colour
//   temperature  the text, right aligned in a column of 52
Item {
    id: root

    required property string name
    required property double fraction
    required property bool hot
    required property string temperature

    Accessible.name: name + " " + temperature
    Accessible.role: Accessible.ListItem
    implicitHeight: 18 + Theme.lineGrowth
    implicitWidth: 360

    ElidedLabel {
        id: title
        objectName: "name"
        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        width: Math.round(150 * Theme.textScale)
    }

    Bar {
        objectName: "bar"
        anchors.left: title.right
        anchors.leftMargin: 6
        anchors.right: value.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        fill: root.hot ? Theme.hot : Theme.accent
        fraction: root.fraction
    }

    Item {
        id: value
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        height: number.height
        width: Math.max(52 * Theme.textScale, number.width)

        TabularText {
            id: number
            Accessible.ignored: true
            anchors.right: parent.right
            text: root.temperature
        }
    }
}
