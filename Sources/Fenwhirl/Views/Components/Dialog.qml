import QtQuick
import QtQuick.Templates as T
import Fenwhirl.Components

// A question in the middle of the dimmed window: icon, title, message, and up to three buttons, one below the other.
//   title, message
//   acceptText        first button, in the accent colour; Return presses it
//   destructiveText   second button, in the warning colour; left out when empty
//   cancelText        last button; left out when empty; Escape does the same
//   iconSource        icon of an application, 48; empty shows the gears
//   showsIcon         false leaves out the icon and its space
//   signals accepted, destructive, cancelled   exactly one for each time it opens, after it has closed
// Call open(); close() counts as cancelled. The focus returns to where it was before.
T.Popup {
    id: root

    property string title: ""
    property string message: ""
    property string acceptText: ""
    property string destructiveText: ""
    property string cancelText: ""
    property url iconSource: ""
    property bool showsIcon: true
    property int answer: Dialog.Answer.Cancel

    signal accepted()
    signal destructive()
    signal cancelled()

    enum Answer { Cancel, Accept, Destructive }

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.CloseOnEscape
    dim: true
    focus: true
    implicitHeight: implicitContentHeight + 2 * padding
    modal: true
    padding: 20
    width: Math.round(300 * Theme.textScale)

    // The item that had the focus when the dialog opened.
    property Item opener: null

    onAboutToShow: {
        answer = Dialog.Answer.Cancel
        opener = parent.Window.activeFocusItem
        introduce()
        const content = contentItem as DialogContent // null in a second engine of one process, with Qt 6.8
        content?.reset() // otherwise the button that had the focus last time is announced first
    }
    onAboutToHide: {
        opener?.forceActiveFocus(Qt.PopupFocusReason)
        opener = null
    }
    onClosed: {
        if (answer === Dialog.Answer.Accept)
            accepted()
        else if (answer === Dialog.Answer.Destructive)
            destructive()
        else
            cancelled()
    }
    onMessageChanged: introduce()
    onTitleChanged: introduce()
    onOpened: (contentItem as DialogContent)?.begin()

    // A popup has the role of a dialog for screen readers, but no name and no description.
    function introduce() {
        const popup = contentItem?.parent
        if (!popup)
            return
        popup.Accessible.description = message
        popup.Accessible.name = title
    }

    function finish(chosen: int) {
        answer = chosen
        close()
    }

    T.Overlay.modal: Rectangle {
        color: Theme.dim

        Behavior on opacity {
            NumberAnimation { duration: Theme.popupDuration; easing.type: Easing.OutCubic }
        }
    }

    background: Surface {
        color: Theme.card
        radius: 16
        stroke: Theme.stroke

        SoftShadow {
            blur: 50
            color: Theme.shadow
            height: parent.height + 2 * blur
            radius: 16
            width: parent.width + 2 * blur
            x: -blur
            y: 18 - blur
            z: -1
        }
    }
    contentItem: DialogContent {
        acceptText: root.acceptText
        cancelText: root.cancelText
        destructiveText: root.destructiveText
        iconSource: root.iconSource
        message: root.message
        showsIcon: root.showsIcon
        title: root.title

        onAccepted: root.finish(Dialog.Answer.Accept)
        onCancelled: root.finish(Dialog.Answer.Cancel)
        onDestructive: root.finish(Dialog.Answer.Destructive)
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.popupDuration; easing.type: Easing.OutCubic }
        NumberAnimation { property: "scale"; from: 0.97; to: 1; duration: Theme.popupDuration; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.popupDuration; easing.type: Easing.OutCubic }
    }
}
