import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// In the panel: what went wrong with the last change, until it is closed. As tall as its text, at most three lines.
Item {
    id: root

    required property ControlView control
    readonly property string message: control.error
    // When the message becomes empty, its words stay: the line may be on its way out.
    property string words: ""

    Accessible.name: words
    Accessible.role: Accessible.AlertMessage
    implicitHeight: Math.max(24, text.implicitHeight)

    onMessageChanged: { if (message !== "") words = message }

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.hot
        height: 16
        name: "exclamationmark.triangle"
        width: 16
        x: 1
    }

    Paragraph {
        id: text
        Accessible.ignored: true // the line says it
        anchors.left: parent.left
        anchors.leftMargin: 26
        anchors.right: close.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        content: root.words
        elide: Text.ElideRight
        maximumLineCount: 3
        size: 12
    }

    CloseButton {
        id: close
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: qsTranslate("SystemWords", "Close")

        onClicked: root.control.dismissError()
    }
}
