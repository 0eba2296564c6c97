import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The dashboard, which is the first page: the machine at a glance, and its fans.
PageFrame {
    id: root

    required property ViewModels models
    readonly property MachineView machine: models.machine

    Column {
        spacing: 18

        PageTitle {
            subtitle: root.machine.computerName
            title: qsTr("Tableau de bord")
            width: parent.width
        }

        Banners {
            control: root.models.control
            problem: root.machine.smcAvailable ? "" : qsTr("Fenwhirl n'arrive pas à lire les capteurs de ce Mac.")
            width: parent.width
        }

        // Stacked where larger texts leave no room for the sensors' bars.
        Grid {
            readonly property bool oneRow: width - temperature.designWidth - spacing >= 92 + 202 * Theme.textScale

            columns: oneRow ? 2 : 1
            spacing: 18
            width: parent.width

            TemperatureCard {
                id: temperature
                readonly property real designWidth: Math.round(340 * Theme.textScale)

                machine: root.machine
                width: parent.oneRow ? designWidth : parent.width
            }

            FeaturedCard {
                height: parent.oneRow ? Math.max(implicitHeight, temperature.implicitHeight) : implicitHeight
                sensors: root.machine.featured
                width: parent.oneRow ? parent.width - temperature.width - parent.spacing : parent.width
            }
        }

        PresetMenu {
            presets: root.models.presets
        }

        Paragraph {
            color: Theme.muted
            content: qsTr("Ce Mac n'a pas de ventilateur à piloter : il se refroidit sans bruit. Les températures restent visibles ci-dessous.")
            visible: root.machine.fans.count === 0
            width: parent.width
        }

        FanGrid {
            machine: root.machine
            width: parent.width
        }
    }
}
