import QtQuick
import Fenwhirl.Components

// A filled rounded shape with a hairline inside its edge. The hairline lies on the fill, so a translucent one blends with
// it.
//   color, radius   of the fill, as in Rectangle
//   stroke          colour of the hairline; transparent for none
//   overlay         colour laid over the fill while overlaid is true, fading in and out (hover, pressed)
Rectangle {
    id: root

    property color stroke: "transparent"
    property color overlay: "transparent"
    property bool overlaid: false
    property int overlayDuration: Theme.hoverDuration

    Rectangle {
        anchors.fill: parent
        color: root.overlay
        opacity: root.overlaid ? 1 : 0
        radius: root.radius
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation { duration: root.overlayDuration; easing.type: Easing.OutCubic }
        }
    }

    Rectangle {
        anchors.fill: parent
        border.color: root.stroke
        border.width: 1
        color: "transparent"
        radius: root.radius
        visible: root.stroke.a > 0
    }
}
