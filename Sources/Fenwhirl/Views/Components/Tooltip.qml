import QtQuick
import QtQuick.Templates as T
import Fenwhirl.Components

// A short explanation below its parent, shown 600 ms after `visible` has become true: bind that to the condition.
// It stays within what is seen of its window.
//   text
T.ToolTip {
    id: root

    readonly property FixedSizeWindow owner: (parent?.Window.window ?? null) as FixedSizeWindow

    delay: 600
    horizontalPadding: 8
    implicitHeight: contentItem.implicitHeight + 2 * verticalPadding
    implicitWidth: contentItem.implicitWidth + 2 * horizontalPadding
    margins: 6 + (owner?.rim ?? 0)
    verticalPadding: 4
    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 4 : 0

    onAboutToShow: OpenTooltip.replaceBy(root)

    background: Surface {
        color: Theme.popup
        radius: 7 - 7 % Theme.cornerStep
        stroke: Theme.stroke

        SoftShadow {
            blur: 12
            color: Theme.shadow
            height: parent.height + 2 * blur
            radius: 7 - 7 % Theme.cornerStep
            width: parent.width + 2 * blur
            x: -blur
            y: 4 - blur
            z: -1
        }
    }
    contentItem: Label {
        size: 12
        text: root.text
    }
}
