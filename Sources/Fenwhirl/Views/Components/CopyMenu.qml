import QtQuick
import Fenwhirl.Components

// Lets the user copy what an item shows: a right click opens a menu with a single item at the pointer. Put it into that
// item.
//   content   the text to copy, as it is when the menu item is chosen
//   menu      null until it is first opened
Item {
    id: root

    required property string content
    readonly property alias menu: loader.made

    anchors.fill: parent

    TapHandler {
        acceptedButtons: Qt.RightButton

        onTapped: point => loader.open(point.position)
    }

    Loader {
        id: loader
        readonly property var made: item

        function open(place: point) {
            const labels = [qsTranslate("SystemTerms", "Copy")]
            if (!made)
                setSource("PopupMenu.qml", {"parent": root, "labels": labels, "currentIndex": -1})
            made.labels = labels // in the current language
            made.x = place.x
            made.y = place.y
            made.open()
        }
    }

    Connections {
        target: loader.item

        function onActivated(index: int) { Clipboard.copy(root.content) }
    }
}
