import QtQuick
import Fenwhirl.Components

// An application-modal question in a window of its own, in front of all others: the program may have no other window open at
// that moment.
FixedSizeWindow {
    id: root

    required property string heading
    required property string message
    required property string acceptText
    required property string laterText
    readonly property string accessibleName: heading
    readonly property string accessibleMessage: message

    signal accepted()

    color: Theme.card
    // The height is final only once the texts are wrapped into lines, which happens after the window is shown.
    fittingSize: Qt.size(Math.round(300 * Theme.textScale), column.implicitHeight + 40)
    flags: Qt.Dialog
    modality: Qt.ApplicationModal
    title: "Fenwhirl"

    function accept() {
        close()
        accepted()
    }

    FocusScope {
        anchors.fill: parent
        anchors.margins: 20
        focus: true

        readonly property bool accessibleModal: true

        Accessible.description: root.message
        Accessible.ignored: Qt.platform.os !== "osx" // elsewhere the window itself is the dialog
        Accessible.name: root.heading
        Accessible.role: Accessible.Dialog
        Keys.onEnterPressed: root.accept()
        Keys.onEscapePressed: root.close()
        Keys.onReturnPressed: root.accept()

        Column {
            id: column
            width: parent.width

            Emblem {
                anchors.horizontalCenter: parent.horizontalCenter
                size: 48
            }

            Item { height: 12; width: 1 }

            Paragraph {
                content: root.heading
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignHCenter
                size: 15
                width: parent.width
            }

            Item { height: 6; width: 1 }

            Paragraph {
                color: Theme.muted
                content: root.message
                horizontalAlignment: Text.AlignHCenter
                size: 12
                width: parent.width
            }

            Item { height: 18; width: 1 }

            Column {
                spacing: 8
                width: parent.width

                PrimaryButton {
                    focus: true
                    designHeight: 32
                    text: root.acceptText
                    width: parent.width

                    onClicked: root.accept()
                }

                NeutralButton {
                    designHeight: 32
                    text: root.laterText
                    width: parent.width

                    onClicked: root.close()
                }
            }
        }
    }
}
