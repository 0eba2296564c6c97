import QtQuick
import Fenwhirl.Components

// A status dot, green while all is well. There is always a text beside it that says the same.
//   good, size (10 by default; larger with the texts)
Rectangle {
    id: root

    required property bool good
    property real size: 10

    color: good ? Theme.good : Theme.hot
    height: width
    radius: width / 2
    width: 2 * Math.round(size * Theme.symbolScale / 2) // even, for a radius of whole points
}
