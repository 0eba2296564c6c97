import QtQuick
import Fenwhirl.Components

// A page that scrolls vertically when its content is higher. Its only child gets the width inside the padding.
//   padding        18 by default
//   frameWidth     maximum width of the frame that contains the content; on a wider page the frame is centred
//   columnWidth    maximum width of the content in that frame, from its left edge
//   revealMargin   distance from the edges to which a control that receives the focus is brought; 12 by default
//   content        default property
// It is scrolled by wheel, touchpad, a finger on the screen and the scroll bar, and by the keys Page Up, Page Down, Home,
// End, Up and Down unless a control in it uses them.
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
    // Desktop users do not scroll by dragging a page with the mouse; the handlers below take wheel, touchpad and finger.
    interactive: false

    // The view is no tab stop. When it has the focus itself, Tab goes on to its content.
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

    onContentYChanged: OpenTooltip.contentMoved()

    function scrollBy(distance: real) {
        contentY = Math.max(0, Math.min(contentY + distance, contentHeight - height))
    }

    // Only after keyboard use: what was clicked is in view already, and a page must not jump under the pointer.
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

    // Scrolls the part that begins at `top` and is `extent` high into view.
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

    // Does not restore the old width: content that was replaced is being destroyed.
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
        enabled: root.contentHeight > root.height // otherwise the enclosing view may scroll
        target: null

        onWheel: event => root.scrollBy(WheelSteps.distance(event.pixelDelta, event.angleDelta, Theme.textScale))
    }
}
