pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The applications page: what is heating the Mac right now, with a switch to quit each application.
PageFrame {
    id: root

    ofText: true

    required property ViewModels models
    readonly property AppsView view: models.apps
    // The first sentence of the explanation, which screen readers say for each switch.
    readonly property string howToQuit: explanation.content.split(". ")[0] + "."

    property Dialog question: Dialog {
        readonly property bool wanted: root.view.asking

        parent: root
        acceptText: qsTr("Fermer")
        cancelText: qsTr("Annuler")
        destructiveText: qsTr("Forcer la fermeture")
        message: qsTr("Les documents non enregistrés dans cette application peuvent être perdus.")

        onAccepted: root.view.quit()
        onCancelled: root.view.cancel()
        onDestructive: root.view.forceQuit()
        onWantedChanged: {
            if (!wanted)
                return
            // Keeps the last title once the question is answered, while the dialog fades out.
            title = Qt.binding(() => root.view.asking ? root.view.questionTitle : title)
            iconSource = root.view.questionIconSource
            open()
        }
    }

    Component.onCompleted: view.pageShown = true
    Component.onDestruction: view.pageShown = false

    Column {
        spacing: 18

        Column {
            spacing: 12
            width: parent.width

            PageTitle {
                subtitle: qsTr("Ce qui fait chauffer ton Mac en ce moment")
                title: qsTr("Applications")
                width: parent.width
            }

            Paragraph {
                id: explanation
                color: Theme.muted
                content: qsTr("Désactive un interrupteur pour fermer l'application. Les documents non enregistrés peuvent être perdus : Fenwhirl demande toujours une confirmation.")
                size: 12
                width: Math.min(parent.width, 620 * Theme.textScale)
            }
        }

        Paragraph {
            color: Theme.muted
            content: qsTr("Aucune application ne sollicite beaucoup le processeur.")
            visible: root.view.apps.count === 0
            width: parent.width
        }

        Card {
            visible: root.view.apps.count > 0
            width: parent.width

            Item {
                implicitHeight: Math.max(18, callout.height)

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.hot
                    height: 18
                    name: "flame"
                    width: 18
                    x: 4
                }

                ChangingText {
                    id: callout
                    content: root.view.calloutText
                    size: 14
                    width: parent.width - x
                    x: 32
                }
            }
        }

        Card {
            visible: root.view.apps.count > 0
            width: parent.width

            Column {
                Accessible.name: qsTr("Applications")
                Accessible.role: Accessible.List

                Repeater {
                    model: root.view.apps

                    AppRow {
                        required property int index
                        required property string appId
                        required property string memoryText
                        required property bool canQuit

                        detail: memoryText
                        divider: index < root.view.apps.count - 1
                        switchText: root.howToQuit
                        protectedText: canQuit ? "" : qsTr("Protégé")
                        width: parent.width

                        onToggled: on => {
                            if (!on)
                                root.view.askToQuit(appId)
                        }
                    }
                }
            }
        }
    }
}
