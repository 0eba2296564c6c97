import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The fans page: all fans, and nothing else.
PageFrame {
    id: root

    required property ViewModels models

    Column {
        spacing: 18

        PageTitle {
            subtitle: qsTr("Choisis la vitesse de chaque ventilateur")
            title: qsTr("Ventilateurs")
            width: parent.width
        }

        Banners {
            control: root.models.control
            width: parent.width
        }

        Paragraph {
            color: Theme.muted
            content: qsTr("Aucun ventilateur détecté sur ce Mac.")
            visible: root.models.machine.fans.count === 0
            width: parent.width
        }

        FanGrid {
            machine: root.models.machine
            width: parent.width
        }
    }
}
