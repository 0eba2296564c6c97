import QtQuick
import Fenwhirl.Components

// A button that may lose something: neutral with a warm label. Properties as in ButtonBase.
ButtonBase {
    labelColor: Theme.hot
    labelWeight: Font.DemiBold
    stroke: Theme.stroke
}
