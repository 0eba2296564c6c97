import QtQuick
import Fenwhirl.Components

// A status dot, green while all is well. There is always a text beside it that says the same.
//   good, size (10 by default)
Rectangle {
    id: root

    required property bool good
    property real size: 10

    color: good ? Theme.good : Theme.hot
    height: size
    radius: size / 2
    width: size
}
