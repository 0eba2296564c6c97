import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// A setting on one line: at the left, one below the other, the heading of its group, its name and a note; at the right the
// control, which is the only child. The control moves below the texts when it would leave them too little room.
Item {
    id: root

    required property string title
    property string heading: ""
    property string note: ""
    default property alias control: trailing.data

    readonly property bool oneRow: width - trailing.width - 12 >= 200 * Theme.textScale

    implicitHeight: oneRow ? Math.max(texts.implicitHeight, trailing.height) : texts.implicitHeight + 12 + trailing.height

    Column {
        id: texts
        spacing: 4
        width: root.oneRow ? parent.width - trailing.width - 12 : parent.width
        y: root.oneRow ? (parent.height - height) / 2 : 0

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
        height: childrenRect.height
        width: childrenRect.width
        x: root.oneRow ? parent.width - width : 0
        y: root.oneRow ? (parent.height - height) / 2 : parent.height - height
    }
}
