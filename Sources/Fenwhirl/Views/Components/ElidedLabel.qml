import QtQuick
import Fenwhirl.Components

// A Label that shows its whole text as a tooltip while it is cut and the pointer rests on it. Give it a width.
Label {
    id: root

    HoverHandler {
        id: pointer
        enabled: root.truncated
    }

    Tooltip {
        objectName: "tooltip"
        text: root.text
        visible: pointer.hovered && root.truncated
    }
}
