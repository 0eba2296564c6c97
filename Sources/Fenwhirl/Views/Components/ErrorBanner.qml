import QtQuick
import Fenwhirl.Components

// A message that something did not work, at least 44 high.
//   message         when it becomes empty, the banner keeps the last text, because it may still be moving out
//   closable        whether it has a close button
//   closeText       the close button's name for screen readers
//   signal closed
Surface {
    id: root

    required property string message
    property bool closable: false
    property string closeText: ""
    property string words: ""

    signal closed()

    Accessible.name: words
    Accessible.role: Accessible.AlertMessage
    color: Theme.errorFill
    implicitHeight: Math.max(44, text.implicitHeight + 26)
    implicitWidth: 400
    radius: 12
    stroke: Theme.errorStroke

    onMessageChanged: { if (message !== "") words = message }

    Symbol {
        id: sign
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.hot
        height: 20
        name: "exclamationmark.triangle"
        width: 20
        x: 20
    }

    Paragraph {
        id: text
        Accessible.ignored: true
        anchors.left: sign.right
        anchors.leftMargin: 10
        anchors.right: root.closable ? close.left : parent.right
        anchors.rightMargin: root.closable ? 10 : 20
        anchors.verticalCenter: parent.verticalCenter
        content: root.words
    }

    CloseButton {
        id: close
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: root.closeText
        visible: root.closable

        onClicked: root.closed()
    }
}
