import QtQuick
import Fenwhirl.Components

// One sensor: name, bar, temperature, and a mark on the bar where it was recently hotter. A tooltip over bar and temperature
// shows the range of the recent temperatures.
//   name         in a column of 150, elided at the right end, with the full name in a tooltip
//   fraction     filled share of the bar, 0 to 1
//   hot          whether the bar has the warning colour
//   peak         position of the mark, 0 to 1; 0 for none
//   peakHot      whether the mark has the warning colour
//   takesFocus   whether it can have the keyboard focus
//   temperature  the text, right-aligned in a column of 52
//   range        the tooltip's text, also the description for screen readers; empty for none
//   barLeft, barWidth  geometry of the bar
//   tooltip      null until it is first needed
Item {
    id: root

    required property string name
    required property double fraction
    required property bool hot
    required property double peak
    required property bool peakHot
    required property string temperature
    required property string range
    readonly property alias barLeft: bar.x
    readonly property alias barWidth: bar.width
    readonly property alias tooltip: tip.tooltip
    // A mark too close to the end of the bar would look like a drawing error.
    readonly property bool marksPeak: (peak - bar.wanted) * bar.width >= 6

    property bool takesFocus: false

    Accessible.description: range
    Accessible.focusable: takesFocus
    Accessible.name: name + " " + spokenTemperature
    Accessible.role: Accessible.ListItem
    implicitHeight: 18 + Theme.lineGrowth
    implicitWidth: 360

    // The temperature that was last announced. It does not change while the row has the focus, because screen readers
    // announce every change of the focused row.
    property string spokenTemperature

    Binding on spokenTemperature {
        restoreMode: Binding.RestoreNone
        value: root.temperature
        when: !root.activeFocus
    }

    FocusRing {
        target: root
        targetRadius: 4
    }

    CopyMenu {
        id: copying
        content: root.name + " " + root.temperature
    }

    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Copy)
        if (event.accepted)
            Clipboard.copy(copying.content)
    }

    ElidedLabel {
        id: title
        objectName: "name"
        Accessible.ignored: true
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        width: Math.round(150 * Theme.textScale)
    }

    Bar {
        id: bar
        objectName: "bar"
        anchors.left: title.right
        anchors.leftMargin: 6
        anchors.right: value.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        fill: root.hot ? Theme.hot : Theme.accent
        fraction: root.fraction
    }

    Rectangle {
        objectName: "peak"
        anchors.verticalCenter: bar.verticalCenter
        color: root.peakHot ? Theme.hot : Theme.accent
        height: 10
        opacity: root.marksPeak ? 1 : 0
        radius: 1.5 - 1.5 % Theme.cornerStep
        visible: opacity > 0
        width: 3
        x: bar.x + Math.round(Math.min(bar.width * root.peak - width / 2, bar.width - width))

        Behavior on opacity {
            enabled: root.visible
            NumberAnimation { duration: Theme.hoverDuration }
        }
    }

    // A temperature wider than any that a sensor can have is drawn smaller.
    Item {
        id: value
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        height: number.height
        width: Math.max(52, Math.min(number.width / Theme.textScale, 72)) * Theme.textScale

        TabularText {
            id: number
            Accessible.ignored: true
            anchors.right: parent.right
            scale: Math.min(1, parent.width / Math.max(width, 1))
            text: root.temperature
            transformOrigin: Item.Right
        }
    }

    Item {
        anchors.left: bar.left
        anchors.right: parent.right
        height: parent.height

        HoverHandler {
            id: pointer
            // A row that a list has hidden for its next use would otherwise stay hovered.
            enabled: root.range !== "" && root.visible

            onPointChanged: tip.scrollsSeen = OpenTooltip.scrolls
        }

        HoverTip {
            id: tip
            objectName: "tip"
            // A row that was scrolled away from under the pointer learns of it late, so the pointer has to have moved since.
            property int scrollsSeen: -1

            text: root.range
            wanted: pointer.hovered && scrollsSeen === OpenTooltip.scrolls
        }
    }
}
