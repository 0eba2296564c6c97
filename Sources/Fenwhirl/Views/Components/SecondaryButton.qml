import QtQuick
import Fenwhirl.Components

// An offer beside the main thing: tinted fill. Properties as in ButtonBase.
ButtonBase {
    fill: Theme.tint
    labelColor: Theme.accentSoft
    labelWeight: Font.Medium
}
