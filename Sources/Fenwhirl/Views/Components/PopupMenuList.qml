pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// The items of a PopupMenu. currentIndex is the one that Return would choose.
//   labels, checkedIndex, itemHeight
//   signal chosen(int index)
//   begin()   brings the checked item into view and, for those who use the keyboard, highlights it
// Keys: Up, Down, Home, End, Page keys move; Return, Enter and Space choose; letters jump to the next item that begins
// with them.
ListView {
    id: root

    required property var labels
    required property int checkedIndex
    required property real itemHeight

    signal chosen(int index)

    Accessible.role: Accessible.PopupMenu
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    currentIndex: -1
    highlightMoveDuration: 0
    // Our own handler moves: the first arrow key goes to the checked item.
    keyNavigationEnabled: false
    model: labels.length

    readonly property ScrollBar bar: ScrollBar {
        parent: root
        view: root
    }

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Return:
        case Qt.Key_Enter:
        case Qt.Key_Space:
            root.choose(root.currentIndex)
            break
        case Qt.Key_Up:
            root.moveCurrent(-1)
            break
        case Qt.Key_Down:
            root.moveCurrent(1)
            break
        case Qt.Key_Home:
            root.currentIndex = 0
            break
        case Qt.Key_End:
            root.currentIndex = root.count - 1
            break
        case Qt.Key_PageUp:
            root.moveCurrent(-11)
            break
        case Qt.Key_PageDown:
            root.moveCurrent(11)
            break
        default:
            event.accepted = event.text.length === 1 && root.jumpTo(event.text)
            return
        }
        event.accepted = true
    }

    function begin() {
        currentIndex = KeyboardFocus.active ? Math.max(0, checkedIndex) : -1
        positionViewAtIndex(Math.max(0, checkedIndex), ListView.Contain)
    }

    function moveCurrent(distance: int) {
        const goal = currentIndex >= 0 ? currentIndex + distance : checkedIndex
        currentIndex = Math.max(0, Math.min(goal, count - 1))
    }

    function choose(index: int) {
        if (index >= 0 && index < count)
            chosen(index)
    }

    function jumpTo(letter: string): bool {
        for (let i = 1; i <= count; ++i) {
            const index = (currentIndex + i + count) % count
            if (labels[index].toLocaleLowerCase().startsWith(letter.toLocaleLowerCase())) {
                currentIndex = index
                return true
            }
        }
        return false
    }

    delegate: PopupMenuItem {
        required property int index

        checked: index === root.checkedIndex
        height: root.itemHeight
        highlighted: index === root.currentIndex
        text: root.labels[index] ?? ""
        width: root.width

        onClicked: root.choose(index)
        onHoveredChanged: { if (hovered) root.currentIndex = index }
    }
}
