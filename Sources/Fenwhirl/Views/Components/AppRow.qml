import QtQuick
import Fenwhirl.Components

// A row for an application that loads the processor. It is 52 high, and more with larger texts, for which the bar gets
// shorter.
//   name, detail        detail is the second, smaller line
//   iconSource          picture of the application; empty shows the gears
//   fraction            filled share of the bar, 0 to 1
//   shareText           the share as text, right-aligned in 44
//   on                  whether the switch is on; set by the owner
//   protectedText       shown instead of the switch when not empty
//   divider             whether a hairline ends the row
//   switchText          what turning the switch off does, for screen readers
//   signal toggled(bool on)  the state that the user requests
Item {
    id: root

    required property string name
    required property string detail
    required property url iconSource
    required property double fraction
    required property string shareText
    required property bool on
    required property string protectedText
    property string switchText: ""
    property bool divider: true

    signal toggled(bool on)

    Accessible.name: name + " " + shareText
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(52, texts.implicitHeight + 18)
    implicitWidth: 600

    AppIcon {
        id: icon
        anchors.verticalCenter: parent.verticalCenter
        source: root.iconSource
    }

    Column {
        id: texts
        anchors.left: icon.right
        anchors.leftMargin: 12
        anchors.right: bar.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        ElidedLabel {
            Accessible.ignored: true
            size: 14
            text: root.name
            width: parent.width
        }

        Label {
            color: Theme.muted
            size: 11
            text: root.detail
            width: parent.width
        }
    }

    Bar {
        id: bar
        anchors.right: share.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        fraction: root.fraction
        width: Math.max(48, 140 - 92 * (Theme.textScale - 1))
    }

    Item {
        id: share
        anchors.right: trailing.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        height: number.height
        width: Math.max(44 * Theme.textScale, number.width)

        TabularText {
            id: number
            Accessible.ignored: true
            anchors.right: parent.right
            size: 14
            text: root.shareText
        }
    }

    Item {
        id: trailing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        height: parent.height
        width: Math.max(64 * Theme.textScale, note.visible ? note.implicitWidth : 0)

        Label {
            id: note
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.muted
            size: 12
            text: root.protectedText
            visible: text.length > 0
        }

        Switch {
            id: quit
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            Accessible.checked: true // the application runs until the question about it is answered
            Accessible.description: spokenShare + ". " + root.switchText
            on: root.on
            text: root.name
            visible: !note.visible

            onToggled: on => root.toggled(on)

            // The share that was last announced. It does not change while the switch has the focus, because screen readers
            // announce every change of the focused control.
            property string spokenShare

            Binding on spokenShare {
                restoreMode: Binding.RestoreNone
                value: root.shareText
                when: !quit.activeFocus
            }
        }
    }

    Divider {
        anchors.top: parent.bottom
        visible: root.divider
        width: parent.width
    }
}
