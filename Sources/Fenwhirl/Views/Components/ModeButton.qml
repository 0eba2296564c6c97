pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// How a fan is driven, as a symbol; unless automatic it is a button that leads back there. 22 x 22, to be pressed in 28 x 28.
//   mode         automatic, constant speed, following a sensor: 0, 1, 2; set by the owner
//   inForce      whether the fan is really driven so
//   text         what the button leads to, in the user's language
//   description  which fan it is and how it is driven, for screen readers
//   signal clicked
Pressable {
    id: root

    required property int mode
    required property bool inForce
    property string description: ""
    readonly property bool leadsBack: mode > 0
    // Where it leads shows before it is pressed.
    readonly property bool showsWhere: leadsBack && (hovered || down || (activeFocus && KeyboardFocus.active))
    readonly property list<string> names: ["mode.auto", "mode.fixed", "mode.curve"]
    readonly property string shown: showsWhere ? names[0] : names[mode] ?? names[0]

    Accessible.description: leadsBack ? description : ""
    Accessible.role: leadsBack ? Accessible.Button : Accessible.Graphic
    height: 22
    reach: 3
    ringRadius: 7
    takesFocus: leadsBack || activeFocus
    width: 22

    background: Surface {
        color: "transparent"
        overlay: root.down ? Theme.pressed : Theme.hover
        overlaid: root.leadsBack && (root.down || root.hovered)
        radius: 7 - 7 % Theme.cornerStep
        stroke: overlaid ? Theme.stroke : "transparent"
    }
    contentItem: Item {
        Repeater {
            model: root.names

            Symbol {
                id: symbol
                required property string modelData

                anchors.centerIn: parent
                color: root.showsWhere ? Theme.text : root.leadsBack && root.inForce ? Theme.accent : Theme.muted
                name: modelData
                opacity: root.shown === modelData ? 1 : 0
                visible: opacity > 0

                Behavior on opacity {
                    NumberAnimation { duration: Theme.hoverDuration }
                }
            }
        }

        HoverTip {
            text: root.text
            wanted: root.leadsBack && root.hovered && !root.down
        }
    }
}
