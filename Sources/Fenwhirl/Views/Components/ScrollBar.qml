import QtQuick
import Fenwhirl.Components

// A thin vertical scroll bar that appears while its view moves or the pointer is over it, and fades 800 ms later.
//   view   the Flickable that it scrolls; the bar must be its direct child, not part of its content
//   flash()  shows the bar as if the view had moved
// The thumb can be dragged; a press beside it moves its centre there.
Item {
    id: root

    required property Flickable view
    readonly property real range: view.contentHeight - view.height
    readonly property real thumbHeight: Math.max(0.08, Math.min(1, view.height / view.contentHeight)) * height
    readonly property real travel: height - thumbHeight
    readonly property bool wanted: pointer.hovered || area.pressed || lingering.running

    Accessible.ignored: true // the view scrolls with keys and follows the focus
    anchors.bottom: parent.bottom
    anchors.right: parent.right
    anchors.top: parent.top
    visible: range > 0
    width: 12
    z: 1

    // Shows the bar for a moment, as a hint that there is more.
    function flash() {
        lingering.restart()
    }

    function goTo(y: real) {
        view.contentY = Math.max(0, Math.min(y / travel, 1)) * range
    }

    Connections {
        target: root.view

        function onContentYChanged() { lingering.restart() }
    }

    Timer {
        id: lingering
        interval: 800
    }

    HoverHandler {
        id: pointer
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    }

    Rectangle {
        objectName: "thumb"
        color: Theme.scrollBar
        height: root.thumbHeight
        opacity: root.wanted ? 1 : 0
        radius: 3
        width: 6
        x: 3
        y: root.range > 0 ? root.view.contentY / root.range * root.travel : 0

        Behavior on opacity {
            NumberAnimation { duration: Theme.hoverDuration; easing.type: Easing.OutCubic }
        }
    }

    MouseArea {
        id: area
        property real grip: 0

        anchors.fill: parent
        preventStealing: true

        onPositionChanged: mouse => root.goTo(mouse.y - grip)
        onPressed: mouse => {
            const top = root.view.contentY / root.range * root.travel
            const onThumb = mouse.y >= top && mouse.y <= top + root.thumbHeight
            grip = onThumb ? mouse.y - top : root.thumbHeight / 2
            root.goTo(mouse.y - grip)
        }
    }
}
