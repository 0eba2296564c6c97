import QtQuick
import Fenwhirl.Components

// Lets its one child grow into a column and shrink out of it, together with the distance to what follows.
//   shown     whether the child is to be seen; what is shown from the beginning does not move
//   gap       distance below the child, part of the height
//   content   default; its width is set here
//   needed    whether the child is to be seen or on its way: what need not exist otherwise can be loaded by it
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

    // Restores nothing: the content that it leaves is being destroyed.
    Binding {
        property: "width"
        restoreMode: Binding.RestoreNone
        target: root.content
        value: root.width
        when: root.content !== null
    }
}
