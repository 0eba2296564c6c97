import QtQuick

// Creates the PopupMenu of a control when it is first opened, so that a menu that nobody opens costs nothing.
//   control         the control below or over which the menu opens; gets the focus back when it closes
//   labels, currentIndex   as in PopupMenu
//   over            whether the current item lies over the control; otherwise the menu opens below it
//   text            what is being chosen, for screen readers
//   menu            the PopupMenu; null before open()
//   signal activated(int index)  an item was chosen
Loader {
    id: root

    required property Item control
    required property var labels
    required property int currentIndex
    property bool over: false
    property string text: ""
    readonly property var menu: item

    signal activated(int index)

    function open() {
        if (!item)
            setSource("PopupMenu.qml", {"parent": control, "labels": labels, "currentIndex": currentIndex, "text": text})
        countWhenOpened = labels.length
        // Not a binding: the menu is still fading out when the choice changes, and must not jump to the new item's place.
        if (over)
            menu.y = -menu.padding - menu.checkedY
        menu.open()
    }

    // When items come or go, an index no longer means the item that the user is about to choose.
    property int countWhenOpened: 0
    onLabelsChanged: {
        if (menu?.visible && labels.length !== countWhenOpened)
            menu.close()
    }

    onLoaded: {
        menu.labels = Qt.binding(() => labels)
        menu.currentIndex = Qt.binding(() => currentIndex)
        menu.text = Qt.binding(() => text)
        if (over) {
            menu.width = Qt.binding(() => Math.max(control.width, menu.implicitWidth))
        } else {
            menu.y = Qt.binding(() => control.height + 6)
        }
    }

    // Not connect(): a menu that is open when its control is destroyed still closes, and then there is nothing left to call.
    Connections {
        target: root.item

        function onActivated(index: int) { root.activated(index) }
        function onClosed() { root.control.forceActiveFocus(Qt.PopupFocusReason) }
    }
}
