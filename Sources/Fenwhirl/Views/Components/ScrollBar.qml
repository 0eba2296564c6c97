import QtQuick
import QtQuick.Templates as T
import Fenwhirl.Components

// A thin vertical scroll bar that shows itself while its view moves or the pointer is on it, and fades 800 ms later.
// Attach it: T.ScrollBar.vertical: ScrollBar {}
T.ScrollBar {
    id: root

    Accessible.ignored: true // the view scrolls by keys and follows the focus
    implicitWidth: 12
    minimumSize: 0.08
    visible: size < 1

    contentItem: Item {
        opacity: root.active || root.pressed ? 1 : 0

        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: 3
            color: Theme.scrollBar
            height: parent.height
            radius: 3
            width: 6
        }

        Behavior on opacity {
            SequentialAnimation {
                PauseAnimation { duration: root.active ? 0 : 800 }
                NumberAnimation { duration: Theme.hoverDuration; easing.type: Easing.OutCubic }
            }
        }
    }
}
