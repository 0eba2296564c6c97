import QtQuick
import Fenwhirl.Components

// The base of all controls that can be pressed: pointer, keys, disabled look, focus ring.
//   text             its name, also for screen readers
//   background       fills the control, behind the content
//   contentItem      fills it too, except for leftPadding and rightPadding
//   down, hovered    whether it is held down, whether the pointer is over it
//   takesFocus       whether it can have the focus; false for the parts of a larger control
//   tabStop          whether Tab stops here, too; false where arrow keys lead to it
//   showsFocusRing           whether a ring shows its focus
//   available        false while it cannot be used for a moment: it keeps the focus, unlike a disabled control
//   disabledOpacity  of the whole control; 1 when its parts have a disabled look of their own
//   ringRadius       corner radius of the control, for the ring around it
//   reach            how far beyond its edges it can be pressed
//   signal clicked   mouse, Space, Return, or a screen reader's press
// It takes the focus when it is clicked, if it can have it.
Item {
    id: root

    property string text: ""
    property Item background
    property Item contentItem
    property bool down: available && (area.containsPress || spaceHeld)
    readonly property bool hovered: area.containsMouse && usable
    property bool takesFocus: true
    property bool tabStop: takesFocus
    property bool showsFocusRing: takesFocus
    property bool available: true
    readonly property bool usable: enabled && available
    property real disabledOpacity: 0.4
    property real ringRadius: 9
    property real reach: 0
    property real leftPadding: 0
    property real rightPadding: 0
    property bool spaceHeld: false

    signal clicked()

    Accessible.focusable: takesFocus
    Accessible.name: text
    Accessible.role: Accessible.Button
    activeFocusOnTab: tabStop || activeFocus // the focused control must remain a tab stop
    opacity: usable ? 1 : disabledOpacity

    Accessible.onPressAction: root.use()
    Keys.onPressed: event => {
        const pressing = event.key === Qt.Key_Return || event.key === Qt.Key_Enter
        event.accepted = pressing || event.key === Qt.Key_Space
        if (event.accepted && event.isAutoRepeat)
            return
        if (pressing)
            root.use()
        else if (event.accepted)
            root.spaceHeld = true
    }
    Keys.onReleased: event => {
        event.accepted = event.key === Qt.Key_Space && !event.isAutoRepeat && root.spaceHeld
        if (event.accepted) {
            root.spaceHeld = false
            root.use()
        }
    }
    onActiveFocusChanged: spaceHeld = false
    onBackgroundChanged: adopt(background, root)
    onContentItemChanged: adopt(contentItem, inside)

    function use() {
        if (usable)
            clicked()
    }

    function adopt(item: Item, place: Item) {
        if (!item)
            return
        item.parent = place
        item.anchors.fill = place
        item.z = place === root ? -1 : 0
    }

    Item {
        id: inside
        anchors.fill: parent
        anchors.leftMargin: root.leftPadding
        anchors.rightMargin: root.rightPadding
    }

    MouseArea {
        id: area
        anchors.fill: parent
        anchors.margins: -root.reach
        hoverEnabled: true

        onClicked: root.use()
        onPressed: {
            if (root.takesFocus)
                root.forceActiveFocus(Qt.MouseFocusReason)
        }
    }

    FocusRing {
        target: root
        targetRadius: root.ringRadius
        wanted: root.showsFocusRing
    }
}
