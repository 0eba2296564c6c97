import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The temperatures from which the Mac is called warm and hot.
Card {
    id: root

    required property PreferencesView preferences

    Column {
        spacing: 16

        Column {
            spacing: 4
            width: parent.width

            Label {
                size: 14
                text: qsTr("État du Mac")
                width: parent.width
            }

            Paragraph {
                color: Theme.muted
                content: qsTr("Choisis à partir de quelle température Fenwhirl affiche que le Mac est chaud. La protection automatique à 92 °C ne change pas.")
                size: 12
                width: Math.min(parent.width, 600 * Theme.textScale)
            }
        }

        Grid {
            readonly property bool oneRow: (width - columnSpacing) / 2 >= 260 * Theme.textScale
            readonly property real columnWidth: oneRow ? (width - columnSpacing) / 2 : width

            columnSpacing: 32
            columns: oneRow ? 2 : 1
            rowSpacing: 16
            width: parent.width

            SliderGroup {
                from: 60
                stepSize: 1
                text: root.preferences.warmText
                to: 100
                value: root.preferences.warmThreshold
                width: parent.columnWidth

                onMoved: value => root.preferences.warmThreshold = value
            }

            SliderGroup {
                from: 65
                stepSize: 1
                text: root.preferences.hotText
                to: 105
                value: root.preferences.hotThreshold
                width: parent.columnWidth

                onMoved: value => root.preferences.hotThreshold = value
            }
        }
    }
}
