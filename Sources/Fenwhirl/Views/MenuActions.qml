import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The panel's buttons: enable fan control (while that is offered), open the main window, quit.
Column {
    id: root

    required property ViewModels models

    spacing: 8

    SecondaryButton {
        available: !root.models.control.installing
        designHeight: 34
        text: root.models.control.installing ? qsTr("Activation…") : qsTr("Activer le contrôle des ventilateurs")
        visible: root.models.control.offersActivation
        width: parent.width

        onClicked: root.models.control.install()
    }

    PrimaryButton {
        large: true
        text: qsTr("Ouvrir Fenwhirl")
        width: parent.width

        onClicked: root.models.openMain()
    }

    NeutralButton {
        large: true
        text: qsTr("Quitter")
        width: parent.width

        onClicked: root.models.quit()
    }
}
