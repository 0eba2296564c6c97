pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The fans of the status item's panel, between two hairlines. When they do not fit, they scroll; a row that is cut and soft
// edges show that there are more.
//   room   the height available to the list
// The height is that of all rows if they fit. Otherwise it is that of as many rows and a half as fit into `room`. If `room`
// is less than two and a half rows, the height is again that of all rows, and the enclosing view scrolls.
Item {
    id: root

    required property MachineView machine
    property real room: 100000
    // The distance to the edge of the panel, where the scroll bar is.
    property real margin: 16
    readonly property real spacing: 14
    readonly property real rowHeight: rows.count > 0 ? (rows.itemAt(0)?.implicitHeight ?? 0) : 0
    readonly property real whole: list.height + 2 * spacing
    readonly property real step: rowHeight + spacing
    readonly property real least: spacing + 2.5 * step
    // An end between two rows would look like the end of the list.
    readonly property real cut: spacing + (Math.floor((room - spacing) / step - 0.5) + 0.5) * step

    // Shows the scroll bar for a moment, as a hint that there is more.
    function flash() {
        view.bar.flash()
    }

    implicitHeight: whole <= room || room < least ? whole : Math.floor(cut)

    ScrollView {
        id: view
        height: parent.height
        padding: 0
        revealMargin: 28
        width: parent.width + 2 * root.margin
        x: -root.margin

        Item {
            height: root.whole

            Column {
                id: list
                spacing: root.spacing
                width: parent.width - 2 * root.margin
                x: root.margin
                y: root.spacing

                Repeater {
                    id: rows
                    model: root.machine.fans

                    MenuFanRow {
                        width: list.width
                    }
                }
            }
        }
    }

    component SoftEdge: Rectangle {
        id: edge
        required property bool shown
        property color above: "transparent"
        property color below: "transparent"

        height: 28
        opacity: shown ? 1 : 0
        visible: opacity > 0
        // Does not cover the panel's own hairline.
        width: view.width - 2
        x: view.x + 1

        Behavior on opacity {
            NumberAnimation { duration: Theme.hoverDuration }
        }

        gradient: Gradient {
            GradientStop { color: edge.above; position: 0 }
            GradientStop { color: edge.below; position: 1 }
        }
    }

    SoftEdge {
        objectName: "upperEdge"
        above: Theme.card
        below: Qt.alpha(Theme.card, 0)
        shown: view.contentY > 0.5
    }

    SoftEdge {
        objectName: "lowerEdge"
        above: Qt.alpha(Theme.card, 0)
        below: Theme.card
        shown: view.contentY < view.contentHeight - view.height - 0.5
        y: parent.height - height
    }

    Divider {
        width: parent.width
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
