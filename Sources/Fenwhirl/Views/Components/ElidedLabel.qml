import QtQuick
import Fenwhirl.Components

// A Label that shows its full text in a tooltip while it is elided and the pointer rests on it. Give it a width.
//   tooltip   null until it is first needed
Label {
    id: root

    readonly property alias tooltip: loader.made

    HoverHandler {
        id: pointer
        enabled: root.truncated

        onHoveredChanged: { if (hovered && root.truncated) loader.active = true }
    }

    // Created when first needed, which is hardly ever: it costs more than everything else here.
    Loader {
        id: loader
        readonly property var made: item

        active: false
        source: "Tooltip.qml"

        onLoaded: {
            made.parent = root
            made.text = Qt.binding(() => root.text)
            made.visible = Qt.binding(() => pointer.hovered && root.truncated)
        }
    }
}
