import QtQuick
import Fenwhirl.Components

// A button for an action that may lose data: neutral, with a label in the warning colour. Properties as in ButtonBase.
ButtonBase {
    labelColor: Theme.hot
    labelWeight: Font.DemiBold
    stroke: Theme.stroke
}
