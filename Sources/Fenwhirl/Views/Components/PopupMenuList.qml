pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// The items of a PopupMenu. currentIndex is the one that Return would choose.
//   labels, checkedIndex, itemHeight
//   signal chosen(int index)
//   begin()   scrolls to the checked item, shows the scroll bar for a moment, and highlights the item after keyboard use
//   restingY(height)   the y coordinate of the checked item in a list of that height after begin()
// Keys: Up, Down, Home, End and the Page keys move; Return, Enter and Space choose. Typing finds the next item that begins
// with the typed text, or has a word that does; repeating a character moves on to the next match.
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
    // Keys scroll the item into view; under the pointer the list does not move.
    highlightFollowsCurrentItem: false
    // Keys.onPressed moves instead, so that the first arrow key goes to the checked item.
    keyNavigationEnabled: false
    model: labels.length

    readonly property ScrollBar bar: ScrollBar {
        parent: root
        view: root
    }

    Keys.onPressed: event => {
        // The key that opened the menu may still be held.
        if (event.isAutoRepeat && [Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space].includes(event.key)) {
            event.accepted = true
            return
        }
        switch (event.key) {
        case Qt.Key_Return:
        case Qt.Key_Enter:
            root.choose(root.currentIndex)
            break
        case Qt.Key_Space:
            if (root.typed !== "")
                root.find(event.text)
            else
                root.choose(root.currentIndex)
            break
        case Qt.Key_Up:
            root.moveCurrent(-1)
            break
        case Qt.Key_Down:
            root.moveCurrent(1)
            break
        case Qt.Key_Home:
            root.goTo(0)
            break
        case Qt.Key_End:
            root.goTo(root.count - 1)
            break
        // The Page keys move by the eleven whole items that a long menu shows.
        case Qt.Key_PageUp:
            root.moveCurrent(-11)
            break
        case Qt.Key_PageDown:
            root.moveCurrent(11)
            break
        default:
            event.accepted = event.text.length === 1 && event.text >= " " && root.find(event.text)
            return
        }
        event.accepted = true
    }

    function begin() {
        typed = ""
        pointerPlace = Qt.point(-1, -1)
        currentIndex = KeyboardFocus.active ? Math.max(0, checkedIndex) : -1
        forceLayout()
        contentY = scrolled(height)
        bar.flash()
    }

    // Scrolls by whole items, so that the last one is cut while there are more.
    function scrolled(room: real): real {
        const whole = Math.floor(room / itemHeight)
        return Math.max(0, Math.min((checkedIndex - whole + 1) * itemHeight, labels.length * itemHeight - room))
    }

    function restingY(room: real): real {
        return Math.max(0, checkedIndex) * itemHeight - scrolled(room)
    }

    function moveCurrent(distance: int) {
        const goal = currentIndex >= 0 ? currentIndex + distance : checkedIndex
        goTo(Math.max(0, Math.min(goal, count - 1)))
    }

    function choose(index: int) {
        if (index >= 0 && index < count)
            chosen(index)
    }

    function find(letter: string): bool {
        typed += letter
        forget.restart()
        return goTo(MenuSearch.find(labels, typed, currentIndex))
    }

    function goTo(index: int): bool {
        if (index < 0)
            return false
        currentIndex = index
        positionViewAtIndex(index, ListView.Contain)
        return true
    }

    // The text that was typed without a pause.
    property string typed: ""

    Timer {
        id: forget
        interval: 1000

        onTriggered: root.typed = ""
    }

    // The last position of the pointer; outside every scene until it is known.
    property point pointerPlace: Qt.point(-1, -1)

    // Only a moving pointer takes the highlight, not one that rests where the menu opens or while keys scroll the items
    // under it. The position of a pointer that has left the list does not count.
    HoverHandler {
        id: pointer
        onPointChanged: { if (hovered) root.follow(point.scenePosition) }
    }

    function follow(place: point) {
        const rested = pointerPlace.x < 0 || pointerPlace === place
        pointerPlace = place
        const inside = mapFromItem(null, place.x, place.y)
        const index = indexAt(inside.x + contentX, inside.y + contentY)
        if (!rested && contains(inside) && index >= 0)
            currentIndex = index
    }

    delegate: PopupMenuItem {
        required property int index

        checked: index === root.checkedIndex
        height: root.itemHeight
        highlighted: index === root.currentIndex
        text: root.labels[index] ?? ""
        width: root.width

        onClicked: root.choose(index)
    }
}
