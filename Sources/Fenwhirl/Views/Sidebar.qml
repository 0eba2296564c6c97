pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The left side of the main window: the program's name, the pages, and how the Mac feels.
Rectangle {
    id: root

    required property MachineView machine
    required property PageList pages

    color: Theme.sidebar
    // The pages need the room too: it grows slower than its texts, which are cut where they must be.
    implicitWidth: Math.round(208 + 112 * (Theme.textScale - 1))

    Accessible.role: Accessible.PageTabList

    Row {
        id: header
        spacing: 10
        x: 18
        y: 34

        Emblem {
            anchors.verticalCenter: parent.verticalCenter
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            font.weight: Font.DemiBold
            size: 15
            text: "Fenwhirl" // i18n-ignore: the product's name is the same in every language
        }
    }

    Column {
        anchors.top: header.bottom
        anchors.topMargin: 18
        spacing: 2
        x: 10

        Repeater {
            model: root.pages

            SidebarRow {
                width: root.width - 20
                required property int index
                required property string title

                selected: index === root.pages.selectedIndex
                text: title

                onClicked: root.pages.selectedIndex = index
            }
        }
    }

    Item {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
        height: word.height
        width: parent.width

        StatusDot {
            anchors.verticalCenter: parent.verticalCenter
            good: root.machine.healthy
            x: 30 - width / 2
        }

        Label {
            id: word
            text: root.machine.statusWord
            width: parent.width - x - 10
            x: 50
        }
    }

    Rectangle {
        anchors.right: parent.right
        color: Theme.stroke
        height: parent.height
        width: 1
    }
}
