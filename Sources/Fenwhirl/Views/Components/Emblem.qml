import QtQuick
import Fenwhirl.Components

// The program's emblem: the fan in bold lines on an accent-coloured square with rounded corners.
//   size     32 (sidebar) or 72 (onboarding)
Rectangle {
    id: root

    property real size: 32

    color: Theme.accent
    height: size
    radius: size > 48 ? size / 4 : size * 9 / 32
    width: size

    Symbol {
        anchors.centerIn: parent
        color: Theme.onAccent
        bold: true
        height: width
        name: "fan"
        width: root.size > 48 ? root.size * 42 / 72 : root.size * 18 / 32
    }
}
