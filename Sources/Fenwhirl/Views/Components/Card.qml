import QtQuick
import Fenwhirl.Components

// A surface that groups what belongs together. Its only child is stretched to the full width inside the padding; several are put
// into a Column.
//   padding    20 by default
//   content    default property; its width is set here, and its height determines that of the card
Surface {
    id: root

    property real padding: 20
    default property Item content

    color: Theme.card
    implicitHeight: (content ? content.height : 0) + 2 * padding
    implicitWidth: (content ? content.implicitWidth : 0) + 2 * padding
    radius: 16
    stroke: Theme.stroke

    onContentChanged: { if (content) content.parent = holder }
    Component.onCompleted: {
        if (holder.children.length > 1) console.warn("A card has one child, and this one has several; put them into a Column")
    }

    // Does not restore the old width: content that was replaced is being destroyed.
    Binding {
        property: "width"
        restoreMode: Binding.RestoreNone
        target: root.content
        value: holder.width
        when: root.content !== null
    }

    Item {
        id: holder
        height: root.height - 2 * root.padding
        width: root.width - 2 * root.padding
        x: root.padding
        y: root.padding
    }
}
