import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 400
    width: 700

    property bool installing: false

    HelperBanner {
        id: helper
        actionText: "Activer"
        busy: root.installing
        busyText: "Activation…"
        message: "Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois."
        title: "Activer le contrôle des ventilateurs"
        width: 688
    }

    HelperBanner {
        id: outdated
        actionText: "Mettre à jour"
        message: ""
        title: "Une mise à jour de l'assistant est disponible."
        width: 688
        y: 100
    }

    ErrorBanner {
        id: error
        closable: true
        closeText: "Fermer"
        message: "L'activation a été annulée ou a échoué."
        width: 688
        y: 200
    }

    ErrorBanner {
        id: narrow
        message: "Ce Mac n'a pas accepté le changement de vitesse du ventilateur, et cela se répète encore et encore."
        width: 300
        y: 300
    }

    SignalSpy { id: activations; signalName: "activated"; target: helper }
    SignalSpy { id: closings; signalName: "closed"; target: error }

    TestCase {
        name: "Banners"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.installing = false
            activations.clear()
        }

        function test_theButtonShowsTheWorkForAsLongAsItLasts() {
            const button = accessibility.find(helper, Accessible.Button)
            compare(helper.height, 66)
            compare(button.text, "Activer")
            mouseClick(button)
            compare(activations.count, 1)
            root.installing = true
            compare(button.text, "Activation…")
            verify(!button.usable)
            verify(button.activeFocus, "what is at work keeps the focus")
            mouseClick(button)
            compare(activations.count, 1)
            root.installing = false
            compare(button.text, "Activer")
            verify(button.usable)
        }

        function test_aBannerWithoutAMessageHasTheSameHeight() {
            compare(outdated.height, 66)
            compare(accessibility.find(outdated, Accessible.Button).text, "Mettre à jour")
        }

        function test_theErrorCanBeClosed() {
            verify(error.height >= 44)
            const button = accessibility.find(error, Accessible.Button)
            compare(accessibility.name(button), "Fermer")
            mouseClick(button)
            compare(closings.count, 1)
        }

        function test_aLongMessageMakesTheBannerHigher() {
            verify(narrow.height > 60)
            compare(accessibility.find(narrow, Accessible.Button), null)
        }

        function test_theMessageIsReadAsAnAlert() {
            compare(accessibility.role(error), Accessible.AlertMessage)
            compare(accessibility.name(error), error.message)
        }
    }
}
