import QtQuick
import Fenwhirl.Components

// A horizontal bar, 6 high: a track and over it the filled share.
//   fraction   0…1; clamped
//   fill       colour of the filled share
Item {
    id: root

    required property double fraction
    property color fill: Theme.accent
    readonly property double wanted: fraction > 0 ? Math.min(fraction, 1) : 0
    property double shown: 0
    // Half the height, where that can be drawn.
    readonly property real cornerRadius: height / 2 - (Theme.cornerStep < height / 2 ? height / 2 % Theme.cornerStep : 0)
    // False until the bar stands: what is there from the beginning does not move into place.
    property bool ready: false

    implicitHeight: 6
    implicitWidth: 140

    // A change of a few points is shown at once: of many temperatures some always flutter by a degree or two, and every
    // frame of a motion costs the processor this program watches.
    onWantedChanged: {
        motion.enabled = ready && Math.abs(wanted - shown) > 0.03
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

    // Never narrower inside than it is high, and cut at its right end instead: a short bar keeps the track's rounding.
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
