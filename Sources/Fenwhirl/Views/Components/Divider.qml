import QtQuick
import Fenwhirl.Components

// A hairline across. Give it a width.
Rectangle {
    color: Theme.stroke
    implicitHeight: 1
}
