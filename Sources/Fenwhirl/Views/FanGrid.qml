pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Fenwhirl.Components
import Fenwhirl.Views

// One card per fan in equal columns: two where there is room, three in wide windows with three fans or more.
GridLayout {
    id: root

    required property MachineView machine
    readonly property real designedFor: width / Theme.textScale
    readonly property int fittingColumns: designedFor >= 1095 && machine.fans.count >= 3 ? 3 : designedFor >= 716 ? 2 : 1
    readonly property real columnWidth: (width - (columns - 1) * columnSpacing) / columns

    columnSpacing: 18
    columns: fittingColumns
    rowSpacing: 18
    visible: machine.fans.count > 0

    Repeater {
        model: root.machine.fans

        FanCard {
            Layout.fillHeight: true
            Layout.preferredWidth: root.columnWidth
            choices: root.machine.sensorChoices
        }
    }
}
