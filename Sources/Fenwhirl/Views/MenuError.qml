import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The panel's message about a failed change, shown until it is dismissed. It is as tall as its text, at most three lines.
Item {
    id: root

    required property ControlView control
    readonly property string message: control.error
    // The last message. It is kept when `message` becomes empty, because the line may still be moving out.
    property string words: ""

    Accessible.name: words
    Accessible.role: Accessible.AlertMessage
    implicitHeight: Math.max(24, text.implicitHeight)

    onMessageChanged: { if (message !== "") words = message }

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.hot
        height: width
        name: "exclamationmark.triangle"
        width: Math.round(16 * Theme.symbolScale)
        x: (Theme.symbolSize - width) / 2
    }

    Paragraph {
        id: text
        Accessible.ignored: true // the root item has the name
        anchors.left: parent.left
        anchors.leftMargin: Theme.symbolSize + 8
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
        text: qsTranslate("SystemTerms", "Close")

        onClicked: root.control.dismissError()
    }
}
