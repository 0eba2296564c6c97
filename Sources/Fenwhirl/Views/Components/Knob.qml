import QtQuick
import Fenwhirl.Components

// The round handle of sliders and switches.
Surface {
    color: Theme.knob
    height: 18
    radius: 9
    stroke: Theme.knobStroke
    width: 18
}
