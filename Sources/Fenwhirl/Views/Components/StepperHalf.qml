import QtQuick
import Fenwhirl.Components

// One half of a Stepper: symbol, states, and the repetition while held.
//   direction   -1 minus, 1 plus
//   possible    whether a step in this direction is possible
//   text        what it changes, as a tooltip
//   signal pressed, stepped   stepped is emitted at once, and repeatedly while held
Item {
    id: root

    required property int direction
    required property bool possible
    property string text: ""

    signal pressed()
    signal stepped()

    height: parent.height

    Item {
        anchors.fill: parent
        clip: true

        // Twice as wide as the half and clipped, so that only the outer corners are round.
        Rectangle {
            color: area.pressed ? Theme.pressed : Theme.hover
            height: parent.height
            radius: 9 - 9 % Theme.cornerStep
            visible: root.possible && (area.pressed || area.containsMouse)
            width: parent.width * 2
            x: root.direction < 0 ? 0 : -parent.width
        }
    }

    Symbol {
        anchors.centerIn: parent
        color: Theme.secondaryText
        height: 13
        name: root.direction < 0 ? "minus" : "plus"
        opacity: root.possible ? 1 : 0.35
        width: 13
    }

    MouseArea {
        id: area
        anchors.fill: parent
        enabled: root.possible
        hoverEnabled: true
        preventStealing: true

        onPressed: {
            root.pressed()
            root.stepped()
            repetition.interval = 400
            repetition.restart()
        }
    }

    HoverTip {
        text: root.text
        wanted: area.containsMouse && !area.pressed
    }

    Timer {
        id: repetition
        repeat: true

        onTriggered: {
            if (!area.pressed) {
                stop()
                return
            }
            interval = 90
            root.stepped()
        }
    }
}
