import QtQuick
import Fenwhirl.Components

// An ordinary button: well with a hairline. Properties as in ButtonBase.
ButtonBase {
    stroke: Theme.stroke
}
