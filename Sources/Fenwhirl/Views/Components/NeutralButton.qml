import QtQuick
import Fenwhirl.Components

// An ordinary button: filled with the well colour, with a hairline. Properties as in ButtonBase.
ButtonBase {
    stroke: Theme.stroke
}
