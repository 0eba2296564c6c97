import QtQuick
import Fenwhirl.Components

// A horizontal hairline. Give it a width.
Rectangle {
    color: Theme.stroke
    implicitHeight: 1
}
