import QtQuick
import Fenwhirl.Components

// The one thing to do here: accent fill. Properties as in ButtonBase.
ButtonBase {
    disabledLabelOpacity: 1
    fill: Theme.accent
    hoverColor: Theme.accentHover
    labelColor: Theme.onAccent
    labelWeight: Font.DemiBold
    pressedColor: Theme.accentDown
}
