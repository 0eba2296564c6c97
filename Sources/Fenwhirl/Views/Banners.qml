pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The banners above a page's content: errors, the offers to enable fan control or to update the helper, and a problem of the
// page's own. Put it into a Column of the same spacing. Its height is one spacing less than that of its banners, so that
// without banners the column looks as if this item were not there.
Item {
    id: root

    required property ControlView control
    property bool showsOffers: true
    // A problem specific to the page; empty for none.
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
                    // Each banner exists only while it is shown or moving.
                    model: errorPlace.needed ? 1 : 0

                    ErrorBanner {
                        closable: true
                        closeText: qsTranslate("SystemTerms", "Close")
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
