pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Fenwhirl.Components

// The menu of a PopupButton or a DropDownMenu. With more than 12 items it scrolls: it is then eleven and a half items high,
// so that the item that is cut shows that there are more.
//   labels, currentIndex   the items and the checked one (-1: none)
//   text                   what is being chosen, for screen readers
//   signal activated(int index)  an item was chosen; the menu closes itself
// Keys as in PopupMenuList; Escape closes it.
T.Popup {
    id: root

    required property var labels
    required property int currentIndex
    property string text: ""
    readonly property real itemHeight: 28 + Theme.lineGrowth
    // The y coordinate of the checked item in the opening menu.
    readonly property real checkedY: list.restingY(implicitHeight - 2 * padding)
    // The width of the widest label, measured while the menu is open.
    property real textWidth: 0

    signal activated(int index)

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    dim: false
    focus: true
    implicitHeight: (labels.length > 12 ? 11.5 : labels.length) * itemHeight + 2 * padding
    // A label that is wider than the window is elided, and has a tooltip.
    implicitWidth: Math.min(Math.ceil(textWidth) + 44 + 2 * padding, parent ? parent.Window.width - 2 * margins : Infinity)
    margins: 8
    modal: true
    padding: 5

    function measure() {
        let widest = 0
        for (const label of labels)
            widest = Math.max(widest, metrics.advanceWidth(label))
        textWidth = widest
    }

    onAboutToShow: {
        // For screen readers the list already is the menu.
        contentItem.parent.Accessible.ignored = true
        measure()
        list.begin()
    }
    onLabelsChanged: { if (visible) measure() }
    onOpened: list.forceActiveFocus()

    readonly property PopupMenuList list: contentItem as PopupMenuList

    FontMetrics {
        id: metrics
        font.pixelSize: Math.round(13 * Theme.textScale)
    }

    background: Surface {
        color: Theme.popup
        radius: 11 - 11 % Theme.cornerStep
        stroke: Theme.stroke

        SoftShadow {
            blur: 32
            color: Theme.shadow
            height: parent.height + 2 * blur
            radius: 11 - 11 % Theme.cornerStep
            width: parent.width + 2 * blur
            x: -blur
            y: 10 - blur
            z: -1
        }
    }
    contentItem: PopupMenuList {
        Accessible.name: root.text
        checkedIndex: root.currentIndex
        itemHeight: root.itemHeight
        labels: root.labels

        onChosen: index => {
            root.close()
            root.activated(index)
        }
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.hoverDuration }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.hoverDuration }
    }
}
