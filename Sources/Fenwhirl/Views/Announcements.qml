import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Announces changes in the program and the machine to screen readers, in a window that shows them: errors, offers, the
// health verdict, the outcome of an installation. Each change is announced once. The state in which the window opens is not
// announced.
Item {
    id: root

    required property ViewModels models
    // Whether changes are announced: only once the window is complete, and only while it is the active one.
    property bool ready: false
    readonly property bool telling: ready && Window.active

    // These are states rather than displayed texts, so that a change of the language announces nothing. Only `error` is
    // compared as a text.
    readonly property string error: models.control.error
    readonly property bool readable: models.machine.smcAvailable
    readonly property bool outdated: models.control.outdated
    readonly property bool offered: models.control.offersActivation
    readonly property int health: models.machine.hasTemperature ? models.machine.status : -1
    property int lastHealth: -1
    readonly property bool blind: ready && models.machine.sensors.count === 0
    readonly property bool installing: models.control.installing
    readonly property bool installed: models.control.installed
    readonly property bool reporting: models.report.busy

    Component.onCompleted: {
        lastHealth = health
        ready = true
    }
    onErrorChanged: tell(error, true)
    onHealthChanged: {
        if (health < 0)
            return
        if (lastHealth >= 0 && health !== lastHealth)
            tell(models.machine.statusWord)
        lastHealth = health
    }
    onBlindChanged: missing.restart()
    onInstalledChanged: tell(installed ? qsTr("Contrôle activé") : qsTr("Non activé : Fenwhirl peut seulement lire les températures."))
    onInstallingChanged: tell(installing ? qsTr("Activation…") : "")
    onOfferedChanged: tell(offered ? qsTr("Activer le contrôle des ventilateurs") : "")
    onOutdatedChanged: tell(outdated ? qsTr("Une mise à jour de l'assistant est disponible.") : "")
    onReadableChanged: tell(readable ? "" : qsTr("Fenwhirl n'arrive pas à lire les capteurs de ce Mac."), true)
    onReportingChanged: tell(reporting ? qsTr("Création en cours…") : "")

    function tell(text: string, urgent = false) {
        if (telling)
            Announcer.say(text, urgent)
    }

    // Sensors that can no longer be read, unless another message explains it: the one about the controller, or the one about
    // the fans. Deferred, because these come with the same poll.
    Timer {
        id: missing
        property bool told: false

        interval: 0

        onTriggered: {
            if (!root.blind && told)
                root.tell(root.models.machine.statusWord)
            told = root.blind && root.readable && root.error === ""
            if (told)
                root.tell(qsTr("Fenwhirl n'arrive pas à lire les capteurs de ce Mac."))
        }
    }

    Announcement {}
}
