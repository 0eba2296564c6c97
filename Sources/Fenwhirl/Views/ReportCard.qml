import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The diagnostic report.
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
                width: Math.min(parent.width, 640)
            }
        }

        Item {
            implicitHeight: create.height
            width: parent.width

            Switch {
                id: fanTest
                anchors.verticalCenter: parent.verticalCenter
                on: root.report.withFanTest
                text: qsTr("Inclure un test des ventilateurs (6 secondes)")

                onToggled: on => root.report.withFanTest = on
            }

            Label {
                anchors.left: fanTest.right
                anchors.leftMargin: 12
                anchors.right: create.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                text: fanTest.text
            }

            NeutralButton {
                id: create
                anchors.right: parent.right
                enabled: !root.report.busy
                text: root.report.busy ? qsTr("Création en cours…") : qsTr("Créer le rapport")

                onClicked: root.report.create()
            }
        }
    }
}
