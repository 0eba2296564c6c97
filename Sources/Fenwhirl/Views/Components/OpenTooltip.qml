pragma Singleton

import QtQml

// The tooltip that is open: at most one is, in all windows. Handlers of hovering are told late, or not at all, when their items
// move away under a resting pointer, as in a list that is scrolled; without this, their tooltips would stay.
QtObject {
    id: root

    property var current: null // a Tooltip, or null
    property int scrolls: 0 // how often anything has been scrolled

    function contentMoved() {
        root.scrolls += 1
    }

    function replaceBy(tooltip: var) {
        if (root.current !== null && root.current !== tooltip)
            root.current.close()
        root.current = tooltip
    }
}
