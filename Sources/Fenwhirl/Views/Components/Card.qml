import QtQuick
import Fenwhirl.Components

// A surface that groups what belongs together: its one child is stretched to the full width inside 20 points of padding.
//   padding    20 unless given
//   content    default; its width is set here, its height makes the card's
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

    // Restores nothing: the content that it leaves is being destroyed.
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
