import QtQuick
import Fenwhirl.Components

// A page that scrolls vertically when its content is higher. Its one child gets the width inside the padding.
//   padding        18 unless given
//   frameWidth     what the content may take at most; beyond that its frame stands in the middle
//   columnWidth    what it takes of that frame at most, from its left edge
//   revealMargin   how far from its edges a control that receives the focus is brought; 12 unless given
//   content        default
// Wheel, touchpad, a finger on the screen, the scroll bar, and the keys Page Up, Page Down, Home, End, Up and Down that no control in it used.
// A control that receives the focus by keyboard is brought into view.
Flickable {
    id: root

    property real padding: 18
    property real frameWidth: Infinity
    property real columnWidth: Infinity
    property real revealMargin: 12
    default property Item content

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: (content ? content.height : 0) + 2 * padding
    contentWidth: width
    // Dragging the page with the mouse is not how a desktop scrolls; the handlers below take wheel, touchpad and finger.
    interactive: false

    // Having the focus itself, it is no stop of its own: from there Tab goes to what it shows.
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_PageDown:
            scrollBy(height * 0.9)
            break
        case Qt.Key_PageUp:
            scrollBy(-height * 0.9)
            break
        case Qt.Key_Down:
            scrollBy(40)
            break
        case Qt.Key_Up:
            scrollBy(-40)
            break
        case Qt.Key_Home:
            scrollBy(-contentHeight)
            break
        case Qt.Key_End:
            scrollBy(contentHeight)
            break
        default:
            return
        }
        event.accepted = true
    }

    function scrollBy(distance: real) {
        contentY = Math.max(0, Math.min(contentY + distance, contentHeight - height))
    }

    // Only with the keyboard: what was clicked is in view, and a page must not jump under the pointer.
    readonly property Item focused: root.Window.activeFocusItem
    onFocusedChanged: {
        if (!KeyboardFocus.active)
            return
        for (let item = focused; item; item = item.parent) {
            if (item === holder) {
                reveal(focused)
                return
            }
        }
    }

    function reveal(item: Item) {
        revealSpan(item.mapToItem(contentItem, 0, 0).y, item.height)
    }

    // Brings what begins there and is that high into view.
    function revealSpan(top: real, extent: real) {
        const margin = revealMargin
        if (top - margin < contentY)
            scrollBy(top - margin - contentY)
        else if (top + extent + margin > contentY + height)
            scrollBy(top + extent + margin - contentY - height)
    }

    onContentChanged: { if (content) content.parent = holder }

    readonly property ScrollBar bar: ScrollBar {
        parent: root
        view: root
    }

    // Restores nothing: the content that it leaves is being destroyed.
    Binding {
        property: "width"
        restoreMode: Binding.RestoreNone
        target: root.content
        value: Math.min(holder.width, root.columnWidth)
        when: root.content !== null
    }

    Item {
        id: holder
        width: Math.min(root.width - 2 * root.padding, root.frameWidth)
        x: Math.floor((root.width - width) / 2)
        y: root.padding
    }

    DragHandler {
        id: finger
        property real before: 0

        acceptedDevices: PointerDevice.TouchScreen
        target: null
        xAxis.enabled: false

        onActiveChanged: {
            if (active) {
                root.cancelFlick()
                before = 0
            } else {
                root.flick(0, centroid.velocity.y)
            }
        }
        onTranslationChanged: {
            root.scrollBy(before - translation.y)
            before = translation.y
        }
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        enabled: root.contentHeight > root.height // else what it lies in may scroll
        target: null

        onWheel: event => root.scrollBy(WheelSteps.distance(event.pixelDelta, event.angleDelta, Theme.textScale))
    }
}
