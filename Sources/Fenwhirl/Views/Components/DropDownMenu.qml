import QtQuick
import Fenwhirl.Components

// A caption and the current choice, 32 high; its menu opens below.
//   caption         13, muted, before the choice
//   currentText     the choice as displayed; need not be one of the labels
//   labels          the choices, a list of strings
//   currentIndex    the checked one, -1 for none; set by the owner
//   signal activated(int index)  a choice was made; the owner then changes currentIndex
// Space, Return and Down open the menu.
Pressable {
    id: root

    required property string caption
    required property string currentText
    required property var labels
    required property int currentIndex
    readonly property string accessibleText: currentText
    readonly property alias menu: opener.menu // null until it is first opened

    signal activated(int index)

    Accessible.role: Accessible.ComboBox
    implicitHeight: 32 + Theme.lineGrowth
    implicitWidth: Math.ceil(contentItem.implicitWidth) + leftPadding + rightPadding
    leftPadding: 12
    rightPadding: 12
    text: caption

    Keys.onDownPressed: root.clicked()
    onClicked: opener.open()

    background: Surface {
        color: Theme.card
        overlay: root.down ? Theme.pressed : Theme.hover
        overlaid: root.enabled && (root.down || root.hovered)
        radius: 9 - 9 % Theme.cornerStep
        stroke: Theme.stroke
    }
    contentItem: Row {
        spacing: 8

        Label {
            Accessible.ignored: true // the control has the name
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.muted
            text: root.caption
        }

        Label {
            Accessible.ignored: true // the control has the name
            anchors.verticalCenter: parent.verticalCenter
            text: root.currentText
        }

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.muted
            height: width
            name: "chevron.down"
            width: Math.round(11 * Theme.textScale)
        }
    }

    MenuOpener {
        id: opener
        control: root
        currentIndex: root.currentIndex
        labels: root.labels
        text: root.text

        onActivated: index => root.activated(index)
    }
}
