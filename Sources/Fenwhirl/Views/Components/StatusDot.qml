import QtQuick
import Fenwhirl.Components

// A dot that is green while all is well. It always stands beside its word.
//   good, size (10 unless given)
Rectangle {
    id: root

    required property bool good
    property real size: 10

    color: good ? Theme.good : Theme.hot
    height: size
    radius: size / 2
    width: size
}
