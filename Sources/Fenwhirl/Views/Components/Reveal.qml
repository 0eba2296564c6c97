import QtQuick
import Fenwhirl.Components

// Lets its only child grow into a column and shrink out of it, together with the spacing below it.
//   shown     whether the child is visible; what is shown from the beginning is not animated
//   gap       spacing below the child, part of the height
//   content   default property; its width is set here
//   needed    whether the child is shown or still moving out; for loading what need not exist otherwise
Item {
    id: root

    property bool shown: false
    property real gap: 0
    property real progress: shown ? 1 : 0
    property bool ready: false
    readonly property bool needed: shown || progress > 0
    default property Item content

    clip: progress < 1
    height: content ? (content.height + gap) * progress : 0
    opacity: progress
    visible: progress > 0

    Component.onCompleted: ready = true
    onContentChanged: { if (content) content.parent = root }

    Behavior on progress {
        enabled: root.ready
        NumberAnimation { duration: Theme.bannerDuration; easing.type: Easing.OutCubic }
    }

    // Does not restore the old width: content that was replaced is being destroyed.
    Binding {
        property: "width"
        restoreMode: Binding.RestoreNone
        target: root.content
        value: root.width
        when: root.content !== null
    }
}
