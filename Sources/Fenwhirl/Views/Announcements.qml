import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Tells a screen reader what changes in the program and the machine, in a window that shows it: trouble, offers, how the Mac
// feels, what became of an installation. Each change once; never what merely was so when the window came up.
Item {
    id: root

    required property ViewModels models
    // Whether changes are told now: not before all is made, and not by a window that is behind.
    property bool ready: false
    readonly property bool telling: ready && Window.active

    // By what they are, not by their words: a change of the language changes nothing.
    readonly property string error: models.control.error
    readonly property bool readable: models.machine.smcAvailable
    readonly property bool outdated: models.control.outdated
    readonly property bool offered: models.control.offersActivation
    readonly property int health: models.machine.hasTemperature ? models.machine.status : -1
    property int lastHealth: -1
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

    Announcement {}
}
