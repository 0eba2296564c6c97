pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The program's name, the health verdict, and the last error.
Column {
    id: root

    required property ControlView control
    required property MachineView machine

    Column {
        spacing: 6
        width: parent.width

        Item {
            height: name.height
            width: parent.width

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.accent
                height: width
                name: "fan"
                width: Theme.symbolSize
            }

            Label {
                id: name
                font.weight: Font.DemiBold
                size: 15
                text: "Fenwhirl" // i18n-ignore: the product's name is the same in every language
                x: Theme.symbolSize + 8
            }
        }

        Item {
            height: word.height
            width: parent.width

            StatusDot {
                anchors.verticalCenter: parent.verticalCenter
                good: root.machine.healthy
                size: 8
                x: (Theme.symbolSize - width) / 2
            }

            Label {
                id: word
                size: 12
                text: root.machine.statusWord
                width: parent.width - x
                x: Theme.symbolSize + 8
            }
        }
    }

    Reveal {
        id: errorPlace
        shown: root.control.error !== ""
        width: parent.width

        Column {
            topPadding: 8

            Repeater {
                model: errorPlace.needed ? 1 : 0

                MenuError {
                    control: root.control
                    width: errorPlace.width
                }
            }
        }
    }
}
