import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Creates the diagnostic report, on request with a test of the fans.
Card {
    id: root

    required property ReportView report

    Column {
        spacing: 16

        Column {
            spacing: 4
            width: parent.width

            Label {
                size: 14
                text: qsTr("Rapport de diagnostic")
                width: parent.width
            }

            Paragraph {
                color: Theme.muted
                content: qsTr("Crée un petit fichier texte avec le modèle de ce Mac et ses capteurs. Utile pour vérifier que Fenwhirl fonctionne sur ton Mac ou pour demander de l'aide.")
                width: Math.min(parent.width, 640 * Theme.textScale)
            }
        }

        // The button is right-aligned in the same row, or below it when the text would have too little room.
        Item {
            id: ways
            readonly property real textRoom: width - fanTest.width - 12
            readonly property bool oneRow: textRoom - 12 - create.width >= 200 * Theme.textScale

            implicitHeight: oneRow ? Math.max(create.height, label.height) : label.height + 12 + create.height
            width: parent.width

            Switch {
                id: fanTest
                anchors.verticalCenter: label.verticalCenter
                on: root.report.withFanTest
                text: qsTr("Inclure un test des ventilateurs (6 secondes)")

                onToggled: on => root.report.withFanTest = on
            }

            Paragraph {
                id: label
                anchors.left: fanTest.right
                anchors.leftMargin: 12
                content: fanTest.text
                width: ways.oneRow ? ways.textRoom - 12 - create.width : ways.textRoom
                y: ways.oneRow ? (parent.height - height) / 2 : 0
            }

            NeutralButton {
                id: create
                available: !root.report.busy
                text: root.report.busy ? qsTr("Création en cours…") : qsTr("Créer le rapport")
                x: ways.oneRow ? parent.width - width : 0
                y: ways.oneRow ? (parent.height - height) / 2 : parent.height - height

                onClicked: root.report.create()
            }
        }
    }
}
