import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// What stands above a page's content when something needs attention; takes no room when nothing does.
Column {
    id: root

    required property ControlView control
    property bool showsError: true

    spacing: 18
    // Asked of the model: a child of something invisible is never visible, so the children cannot answer.
    visible: (showsError && control.error !== "") || control.offersActivation || control.outdated

    ErrorBanner {
        id: error
        closable: true
        closeText: qsTr("Fermer")
        message: root.control.error
        visible: root.showsError && message !== ""
        width: root.width

        onClosed: root.control.dismissError()
    }

    HelperBanner {
        id: activation
        actionText: qsTr("Activer")
        busy: root.control.installing
        busyText: qsTr("Activation…")
        message: qsTr("Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois.")
        title: qsTr("Activer le contrôle des ventilateurs")
        visible: root.control.offersActivation
        width: root.width

        onActivated: root.control.install()
    }

    HelperBanner {
        id: update
        actionText: qsTr("Mettre à jour")
        busy: root.control.installing
        busyText: qsTr("Activation…")
        message: ""
        title: qsTr("Une mise à jour de l'assistant est disponible.")
        visible: root.control.outdated
        width: root.width

        onActivated: root.control.install()
    }
}
