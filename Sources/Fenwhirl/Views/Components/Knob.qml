import QtQuick
import Fenwhirl.Components

// The round handle of sliders and switches. It is never translucent: disabled, it takes the colour it would have then.
Surface {
    color: enabled ? Theme.knob : Theme.knobDisabled
    height: 18
    radius: 9
    stroke: Theme.knobStroke
    width: 18
}
