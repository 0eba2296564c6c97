import QtQuick
import Fenwhirl.Components

// A horizontal bar, 6 high: a track with the filled share on top.
//   fraction   0 to 1; clamped
//   fill       colour of the filled share
Item {
    id: root

    required property double fraction
    property color fill: Theme.accent
    readonly property double wanted: fraction > 0 ? Math.min(fraction, 1) : 0
    property double shown: 0
    // Half the height, or the next smaller radius that can be drawn well (see Theme.cornerStep).
    readonly property real cornerRadius: height / 2 - (Theme.cornerStep < height / 2 ? height / 2 % Theme.cornerStep : 0)
    // False until the bar is complete, so that its first value is not animated.
    property bool ready: false

    implicitHeight: 6
    implicitWidth: 140

    // A change of up to 3 % is not animated: among many temperatures some always fluctuate by a degree or two, and every
    // frame of an animation loads the processor that this program watches. A bar that nobody sees is not animated either:
    // a list that reuses its rows gives a hidden one the value of another sensor.
    onWantedChanged: {
        motion.enabled = ready && visible && Math.abs(wanted - shown) > 0.03
        shown = wanted
    }
    Component.onCompleted: ready = true

    Behavior on shown {
        id: motion
        NumberAnimation { duration: Theme.gaugeDuration; easing.type: Easing.OutCubic }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.track
        radius: root.cornerRadius
    }

    // The coloured rectangle is never narrower than it is high; a short bar is clipped at its right end instead, so that it
    // keeps the rounding of the track.
    Item {
        readonly property alias color: ink.color

        objectName: "fill"
        clip: width < height
        height: parent.height
        visible: width > 0
        width: root.width * root.shown

        Rectangle {
            id: ink
            color: root.fill
            height: parent.height
            radius: root.cornerRadius
            width: Math.max(parent.width, height)
        }
    }
}
