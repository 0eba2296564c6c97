pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The sidebar of the main window: the program's name, the pages, and the health verdict.
// It is one tab stop, the row of the selected page: Up and Down select the previous and the next page, Home and End the
// first and the last.
Rectangle {
    id: root

    required property MachineView machine
    required property PageList pages
    // In a window narrower than 944 points the sidebar gives the page what its longest title can spare.
    required property real windowWidth

    color: Theme.sidebar
    // The page needs room too, so the width grows more slowly than the texts, which are elided if necessary.
    implicitWidth: Math.round(Math.max(184, Math.min(windowWidth / Theme.textScale - 736, 208)) + 112 * (Theme.textScale - 1))

    // Whether one of the rows has the keyboard focus.
    readonly property alias hasFocus: rowScope.activeFocus

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

    FocusScope {
        id: rowScope
        Accessible.name: "Fenwhirl" // i18n-ignore: the product's name is the same in every language
        Accessible.role: Accessible.PageTabList
        anchors.top: header.bottom
        anchors.topMargin: 18
        height: pageRows.height
        width: parent.width
        x: 10

        // A page can be chosen by a shortcut, too.
        Connections {
            target: root.pages

            function onSelectedChanged() {
                if (rowScope.activeFocus)
                    rows.itemAt(root.pages.selectedIndex)?.forceActiveFocus(Qt.OtherFocusReason)
            }
        }

        Keys.onPressed: event => {
            switch (event.key) {
            case Qt.Key_Down:
                moveTo(focusedRow() + 1)
                break
            case Qt.Key_Up:
                moveTo(focusedRow() - 1)
                break
            case Qt.Key_Home:
                moveTo(0)
                break
            case Qt.Key_End:
                moveTo(rows.count - 1)
                break
            default:
                return
            }
            event.accepted = true
        }

        function focusedRow(): int {
            for (let i = 0; i < rows.count; ++i) {
                if (rows.itemAt(i)?.activeFocus)
                    return i
            }
            return root.pages.selectedIndex
        }

        // Moving the focus to a row also selects its page, as is usual in sidebars.
        function moveTo(index: int) {
            if (index < 0 || index >= rows.count)
                return
            root.pages.selectedIndex = index
            rows.itemAt(index).forceActiveFocus(Qt.OtherFocusReason)
        }

        Column {
            id: pageRows
            spacing: 2

            Repeater {
                id: rows
                model: root.pages

                SidebarRow {
                    width: root.width - 20
                    required property int index
                    required property string title

                    selected: index === root.pages.selectedIndex
                    selectedText: qsTr("Actif")
                    text: title

                    onClicked: {
                        root.pages.selectedIndex = index
                        Announcer.say(title)
                    }
                }
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
            x: 21 + (Theme.symbolSize - width) / 2 // on the axis of the rows' symbols
        }

        Label {
            id: word
            text: root.machine.statusWord
            width: parent.width - x - 1 // up to the stroke, which the longest word needs at twice the size
            x: 32 + Theme.symbolSize
        }
    }

    Rectangle {
        anchors.right: parent.right
        color: Theme.stroke
        height: parent.height
        width: 1
    }
}
