pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// A symbol for how a fan is driven. Unless that is automatic, it is a button that returns the fan to automatic. Its size
// is 22 x 22, its pressable area 28 x 28, larger with the texts.
//   mode         automatic, constant speed, following a sensor: 0, 1, 2; set by the owner
//   inForce      whether the fan is actually driven in this mode
//   text         what the button switches to, in the user's language
//   description  which fan it is and how it is driven, for screen readers
//   signal clicked
Item {
    id: root

    required property int mode
    required property bool inForce
    property string text: ""
    property string description: ""
    readonly property bool leadsBack: mode > 0
    // Shows the symbol of the target mode before the button is pressed.
    readonly property bool showsWhere: leadsBack && (button.hovered || button.down || (button.activeFocus && KeyboardFocus.active))
    readonly property list<string> names: ["mode.auto", "mode.fixed", "mode.curve"]
    readonly property string shown: showsWhere ? names[0] : names[mode] ?? names[0]

    signal clicked()

    implicitHeight: implicitWidth
    implicitWidth: Math.round(22 * Theme.symbolScale)

    // In automatic mode there is only a picture, which cannot be pressed.
    Item {
        Accessible.name: root.text
        Accessible.role: Accessible.Graphic
        anchors.fill: parent
        visible: !root.leadsBack
    }

    Pressable {
        id: button
        Accessible.description: root.description
        Accessible.role: Accessible.Button
        anchors.fill: parent
        reach: 3
        ringRadius: 7
        text: root.text
        visible: root.leadsBack

        background: Surface {
            color: "transparent"
            overlay: button.down ? Theme.pressed : Theme.hover
            overlaid: button.down || button.hovered
            radius: 7 - 7 % Theme.cornerStep
            stroke: overlaid ? Theme.stroke : "transparent"
        }

        onClicked: root.clicked()

        HoverTip {
            text: root.text
            wanted: button.hovered && !button.down
        }
    }

    Repeater {
        model: root.names

        Symbol {
            required property string modelData

            anchors.centerIn: parent
            color: root.showsWhere ? Theme.text : root.leadsBack && root.inForce ? Theme.accent : Theme.muted
            height: width
            name: modelData
            opacity: root.shown === modelData ? 1 : 0
            visible: opacity > 0
            width: Theme.symbolSize

            Behavior on opacity {
                NumberAnimation { duration: Theme.hoverDuration }
            }
        }
    }
}
