import QtQuick
import Fenwhirl.Components

// The round handle of sliders and switches, 18 in diameter, with a faint shadow below it. It is never translucent: when it
// is disabled, it takes the colour that a translucent knob would show.
Item {
    id: root

    height: 18
    width: 18

    SoftShadow {
        blur: 3
        color: Theme.knobShadow
        height: parent.height + 2 * blur
        radius: parent.width / 2
        visible: root.enabled
        width: parent.width + 2 * blur
        x: -blur
        y: 1 - blur
    }

    Surface {
        anchors.fill: parent
        color: root.enabled ? Theme.knob : Theme.knobDisabled
        radius: width / 2
        stroke: Theme.knobStroke
    }
}
