import QtQuick
import Fenwhirl.Components

// A horizontal bar, 6 high: a track and over it the filled share.
//   fraction   0…1; clamped
//   fill       colour of the filled share
Item {
    id: root

    required property double fraction
    property color fill: Theme.accent
    readonly property double shown: fraction > 0 ? Math.min(fraction, 1) : 0

    implicitHeight: 6
    implicitWidth: 140

    Rectangle {
        anchors.fill: parent
        color: Theme.track
        radius: height / 2
    }

    // Clipped at its right end and as wide as the track inside, so that a short bar keeps the track's rounding.
    Rectangle {
        objectName: "fill"
        color: root.fill
        height: parent.height
        radius: height / 2
        visible: width > 0
        width: root.width * root.shown

        Behavior on width {
            NumberAnimation { duration: Theme.gaugeDuration; easing.type: Easing.OutCubic }
        }
    }
}
