import QtQuick
import QtQuick.Layouts
import Fenwhirl.Components

// A choice from a list, 28 high; its menu opens with the current item over the button.
//   labels          the choices, a list of strings
//   currentIndex    the chosen one; -1 shows no choice; set by the owner
//   text            what is chosen, for screen readers
//   signal activated(int index)  a choice was made; the owner then changes currentIndex
// Space, Return, Up and Down open the menu.
Pressable {
    id: root

    required property var labels
    required property int currentIndex
    readonly property string currentLabel: labels[currentIndex] ?? ""
    readonly property alias menu: popup

    signal activated(int index)

    Accessible.description: currentLabel
    Accessible.role: Accessible.ComboBox
    implicitHeight: 28 + Theme.lineGrowth
    implicitWidth: Math.round(200 * Theme.textScale)
    leftPadding: 11
    rightPadding: 8

    Keys.onDownPressed: root.clicked()
    Keys.onUpPressed: root.clicked()
    onClicked: popup.open()

    background: Surface {
        color: Theme.well
        overlay: root.down ? Theme.pressed : Theme.hover
        overlaid: root.enabled && (root.down || root.hovered)
        radius: 9
        stroke: Theme.stroke
    }
    contentItem: RowLayout {
        spacing: 8

        ElidedLabel {
            Accessible.ignored: true // the control says it
            Layout.fillWidth: true
            text: root.currentLabel
        }

        Symbol {
            Layout.preferredHeight: Layout.preferredWidth
            Layout.preferredWidth: Math.round(13 * Theme.textScale)
            color: Theme.muted
            name: "chevron.up.chevron.down"
        }
    }

    PopupMenu {
        id: popup
        currentIndex: root.currentIndex
        labels: root.labels
        width: Math.max(root.width, implicitWidth)
        // The current item lies over the button, as far as the list is not scrolled.
        y: -padding - Math.min(Math.max(0, currentIndex), 11) * itemHeight

        onActivated: index => root.activated(index)
        onClosed: root.forceActiveFocus(Qt.PopupFocusReason)
    }
}
