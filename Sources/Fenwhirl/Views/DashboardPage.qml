import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The first page: the machine at a glance, and its fans.
ScrollView {
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

        Row {
            spacing: 18
            width: parent.width

            TemperatureCard {
                id: temperature
                machine: root.machine
                width: 340
            }

            FeaturedCard {
                height: temperature.height
                sensors: root.machine.featured
                width: parent.width - temperature.width - parent.spacing
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
