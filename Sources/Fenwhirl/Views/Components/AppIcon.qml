import QtQuick
import Fenwhirl.Components

// An application's icon, or the gears when it has none.
//   source   URL of the picture; empty for none
//   size     28 in lists, 48 in dialogs
Item {
    id: root

    required property url source
    property real size: 28

    implicitHeight: size
    implicitWidth: size

    Image {
        id: picture
        anchors.fill: parent
        asynchronous: true
        fillMode: Image.PreserveAspectFit
        mipmap: true
        source: root.source
        sourceSize.height: root.size * 2
        sourceSize.width: root.size * 2
        visible: status === Image.Ready
    }

    Symbol {
        anchors.centerIn: parent
        color: Theme.muted
        height: width
        name: "gearshape.2"
        visible: !picture.visible && picture.status !== Image.Loading
        width: root.size * 18 / 28
    }
}
