import QtQuick
import Fenwhirl.Components

// A sentence with a changing number: on one line with digits of equal width, or wrapped when it does not fit on one. Give it
// a width.
//   content   the sentence
//   size      as in Label
Item {
    id: root

    required property string content
    property int size: 13
    readonly property bool oneLine: line.implicitWidth <= width

    implicitHeight: oneLine ? line.implicitHeight : lines.implicitHeight
    implicitWidth: line.implicitWidth

    TabularText {
        id: line
        size: root.size
        text: root.content
        visible: root.oneLine
    }

    Paragraph {
        id: lines
        content: root.content
        size: root.size
        visible: !root.oneLine
        width: root.width
    }
}
