import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// A setting on one line: its group's heading, its name and a note below each other, and at the right end the control,
// which is the one child.
Item {
    id: root

    required property string title
    property string heading: ""
    property string note: ""
    default property alias control: trailing.data

    implicitHeight: Math.max(texts.implicitHeight, trailing.height)

    Column {
        id: texts
        anchors.left: parent.left
        anchors.right: trailing.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        Label {
            color: Theme.muted
            size: 12
            text: root.heading
            visible: text !== ""
            width: parent.width
        }

        Paragraph {
            content: root.title
            size: 14
            width: parent.width
        }

        Paragraph {
            color: Theme.muted
            content: root.note
            size: 12
            visible: text !== ""
            width: parent.width
        }
    }

    Item {
        id: trailing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        height: childrenRect.height
        width: childrenRect.width
    }
}
