pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The presets page: each preset with its description.
PageFrame {
    id: root

    ofText: true

    required property ViewModels models

    Column {
        spacing: 18

        PageTitle {
            subtitle: qsTr("Un clic pour changer le comportement des ventilateurs")
            title: qsTr("Préréglages")
            width: parent.width
        }

        Banners {
            control: root.models.control
            width: parent.width
        }

        Repeater {
            model: root.models.presets

            PresetCard {
                required property int index

                width: parent.width

                onApplied: root.models.presets.apply(index)
            }
        }
    }
}
