import QtQuick
import Fenwhirl.Components

// Lets what is shown be copied: the other mouse button opens a menu of one item under the pointer. Put it into what shows it.
//   content   what is copied, as it is when the item is chosen
//   menu      null before it was first opened
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
            const labels = [qsTranslate("SystemWords", "Copy")]
            if (!made)
                setSource("PopupMenu.qml", {"parent": root, "labels": labels, "currentIndex": -1})
            made.labels = labels // in the language of now
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
