import QtQuick
import Fenwhirl.Components

// An offer with a button: to set up fan control, or to update something.
//   title, message      the message may be empty
//   actionText          the button's label
//   busyText            the label while busy; the button cannot be pressed then
//   busy
//   signal activated
Surface {
    id: root

    required property string title
    required property string message
    required property string actionText
    property string busyText: actionText
    property bool busy: false

    signal activated()

    color: Theme.card
    implicitHeight: Math.max(66, texts.implicitHeight + 28)
    implicitWidth: 500
    radius: 12
    stroke: Theme.stroke

    Column {
        id: texts
        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: button.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter

        Paragraph {
            content: root.title
            font.weight: Font.DemiBold
            size: 14
            width: parent.width
        }

        Paragraph {
            color: Theme.muted
            content: root.message
            visible: text.length > 0
            width: parent.width
        }
    }

    PrimaryButton {
        id: button
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        Accessible.description: root.title
        available: !root.busy
        text: root.busy ? root.busyText : root.actionText

        onClicked: root.activated()
    }
}
