import QtQuick
import Fenwhirl.Components

// The button of an action beside the main one: tinted fill. Properties as in ButtonBase.
ButtonBase {
    fill: Theme.tint
    labelColor: Theme.accentSoft
    labelWeight: Font.Medium
}
