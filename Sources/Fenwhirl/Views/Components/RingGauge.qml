import QtQuick
import Fenwhirl.Components

// A three-quarter ring with a value and its unit in the middle; 128 x 128, and larger with larger texts.
//   fraction   0 to 1, anything else is clamped (NaN: 0)
//   valueText  30, bold, digits of equal width
//   caption    12, muted, below it
//   aim        the requested fraction, a tick outside the ring; NaN for no tick
//   aimText    what a screen reader says about the tick
// The tick reaches 10 points beyond the frame.
Item {
    id: root

    required property double fraction
    required property string valueText
    required property string caption
    property double aim: NaN
    property string aimText: ""

    // False until the gauge is complete, so that its first value is not animated.
    property bool ready: false
    readonly property double wanted: fraction > 0 ? Math.min(fraction, 1) : 0
    readonly property alias shown: arc.fraction
    readonly property alias shownAim: arc.tick
    readonly property bool hasAim: !isNaN(aim)

    // A change of up to 0.5 % is not animated: measured speeds always fluctuate, and every frame of an animation loads the
    // processor that this program watches.
    onWantedChanged: {
        motion.enabled = ready && Math.abs(wanted - arc.fraction) > 0.005
        arc.fraction = wanted
    }

    // Without a target the tick fades out where it is. A tick that appears fades in at its position.
    onAimChanged: {
        if (isNaN(aim))
            return
        aimMotion.enabled = ready && arc.tickOpacity > 0
        arc.tick = aim
    }

    Accessible.description: hasAim ? aimText : ""
    Accessible.name: valueText + " " + caption
    Accessible.role: Accessible.StaticText
    implicitHeight: implicitWidth
    implicitWidth: Math.round(128 * Theme.textScale)

    Component.onCompleted: ready = true

    RingArc {
        id: arc
        anchors.fill: parent
        anchors.margins: -inset * parent.width / 128
        inset: 12
        tickColor: Theme.text
        tickOpacity: root.hasAim ? 1 : 0
        trackColor: Theme.track
        valueColor: Theme.accent

        Behavior on fraction {
            id: motion
            NumberAnimation { duration: Theme.gaugeDuration; easing.type: Easing.OutCubic }
        }

        Behavior on tick {
            id: aimMotion
            NumberAnimation { duration: Theme.pillDuration; easing.type: Easing.OutCubic }
        }

        Behavior on tickOpacity {
            enabled: root.ready
            NumberAnimation { duration: Theme.hoverDuration; easing.type: Easing.OutCubic }
        }
    }

    Column {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: 1.5

        // A fan may report any number: one that is wider than the inside of the ring is drawn smaller.
        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            height: number.height
            width: Math.min(number.width, Math.round(102 * Theme.textScale))

            TabularText {
                id: number
                objectName: "value"
                Accessible.ignored: true
                anchors.centerIn: parent
                letterSpacing: -0.9
                scale: Math.min(1, parent.width / Math.max(width, 1))
                size: 30
                text: root.valueText
                weight: Font.Bold
            }
        }

        Label {
            Accessible.ignored: true
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.muted
            size: 12
            text: root.caption
        }
    }
}
