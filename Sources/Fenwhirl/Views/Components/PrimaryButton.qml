import QtQuick
import Fenwhirl.Components

// The button of the main action: accent fill. Properties as in ButtonBase.
ButtonBase {
    disabledLabelOpacity: 1
    fill: Theme.accent
    hoverColor: Theme.accentHover
    labelColor: Theme.onAccent
    labelWeight: Font.DemiBold
    pressedColor: Theme.accentDown
}
