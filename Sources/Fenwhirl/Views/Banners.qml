pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// What stands above a page's content when something needs attention. It belongs into a column of the same spacing, of which
// it gives one back: when nothing is shown, the column looks as if this were not there.
Item {
    id: root

    required property ControlView control
    property bool showsOffers: true
    // A trouble of the page's own.
    property string problem: ""
    readonly property real spacing: 18

    height: places.height - spacing

    Column {
        id: places
        width: parent.width

        Reveal {
            id: errorPlace
            gap: root.spacing
            shown: root.control.error !== ""
            width: parent.width

            Column {
                Repeater {
                    model: errorPlace.needed ? 1 : 0

                    ErrorBanner {
                        closable: true
                        closeText: qsTranslate("SystemWords", "Close")
                        message: root.control.error
                        width: errorPlace.width

                        onClosed: root.control.dismissError()
                    }
                }
            }
        }

        Reveal {
            id: offerPlace
            gap: root.spacing
            shown: root.showsOffers && root.control.offersActivation
            width: parent.width

            Column {
                Repeater {
                    model: offerPlace.needed ? 1 : 0

                    HelperBanner {
                        actionText: qsTr("Activer")
                        busy: root.control.installing
                        busyText: qsTr("Activation…")
                        message: qsTr("Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois.")
                        title: qsTr("Activer le contrôle des ventilateurs")
                        width: offerPlace.width

                        onActivated: root.control.install()
                    }
                }
            }
        }

        Reveal {
            id: updatePlace
            gap: root.spacing
            shown: root.showsOffers && root.control.outdated
            width: parent.width

            Column {
                Repeater {
                    model: updatePlace.needed ? 1 : 0

                    HelperBanner {
                        actionText: qsTr("Mettre à jour")
                        busy: root.control.installing
                        busyText: qsTr("Activation…")
                        message: ""
                        title: qsTr("Une mise à jour de l'assistant est disponible.")
                        width: updatePlace.width

                        onActivated: root.control.install()
                    }
                }
            }
        }

        Reveal {
            id: problemPlace
            gap: root.spacing
            shown: root.problem !== ""
            width: parent.width

            Column {
                Repeater {
                    model: problemPlace.needed ? 1 : 0

                    ErrorBanner {
                        message: root.problem
                        width: problemPlace.width
                    }
                }
            }
        }
    }
}
