import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The onboarding at the first start, over the dimmed window: three steps, forward only, none of which can fail.
//   shown        false fades it out
//   signal gone  it has faded out
FocusScope {
    id: root

    property ControlView control: null
    property PreferencesView preferences: null
    property int step: 0
    property bool shown: true
    readonly property bool isLast: step === 2
    readonly property bool accessibleModal: true

    signal gone()

    Accessible.name: title.content
    Accessible.role: Accessible.Dialog

    opacity: 0

    Component.onCompleted: opacity = Qt.binding(() => shown ? 1 : 0)
    onOpacityChanged: {
        if (!shown && opacity === 0)
            gone()
    }

    Behavior on opacity {
        NumberAnimation { duration: Theme.popupDuration; easing.type: Easing.OutCubic }
    }

    function advance() {
        if (isLast) {
            preferences.finishOnboarding()
        } else {
            step += 1
            Announcer.say(title.content + ". " + message.content)
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.dim
    }

    MouseArea {
        anchors.fill: parent // keeps the pointer from everything behind
        hoverEnabled: true

        onWheel: wheel => wheel.accepted = true
    }

    Surface {
        id: sheet
        // Enough for most steps, so that the button stays in place from step to step.
        readonly property real leastHeight: 424 + Math.round(150 * (Theme.textScale - 1))
        // The height of dots and button, with the space between and below them.
        readonly property real below: 8 + 20 + forward.height + 28

        anchors.centerIn: parent
        color: Theme.window
        height: Math.min(Math.max(leastHeight, 40 + content.implicitHeight + 20 + below), parent.height - 32)
        radius: 16
        scale: 0.97 + 0.03 * root.opacity
        stroke: Theme.stroke
        width: Math.min(Math.round(440 * Theme.textScale), parent.width - 32)

        SoftShadow {
            blur: 50
            color: Theme.shadow
            height: parent.height + 2 * blur
            radius: 16
            width: parent.width + 2 * blur
            x: -blur
            y: 18 - blur
            z: -1
        }

        // Scrolls when large texts do not fit into the window.
        ScrollView {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: sheet.below + 20
            anchors.top: parent.top
            anchors.topMargin: 40
            clip: contentHeight > height
            padding: 0
            width: parent.width

            Column {
                id: content

                Emblem {
                    anchors.horizontalCenter: parent.horizontalCenter
                    size: 72
                }

                Item { height: 24; width: 1 }

                Paragraph {
                    id: title
                    anchors.horizontalCenter: parent.horizontalCenter
                    content: [qsTr("Bienvenue dans Fenwhirl"), qsTr("Pilote tes ventilateurs"), qsTr("Tout est prêt")][root.step]
                    font.letterSpacing: -0.2 * Theme.textScale
                    font.weight: Font.Bold
                    horizontalAlignment: Text.AlignHCenter
                    size: 22
                    width: sheet.width - 80
                }

                Item { height: 9; width: 1 }

                Paragraph {
                    id: message
                    anchors.horizontalCenter: parent.horizontalCenter
                    color: Theme.secondaryText
                    content: [
                        qsTr("Fenwhirl surveille la température de ton Mac et règle la vitesse des ventilateurs pour qu'il reste frais et silencieux."),
                        qsTr("Pour changer la vitesse des ventilateurs, macOS demande ton mot de passe une seule fois. Tu peux passer cette étape : Fenwhirl affichera alors seulement les températures."),
                        qsTr("Choisis un préréglage en un clic depuis la barre de menu, ou règle chaque ventilateur depuis la fenêtre principale."),
                    ][root.step]
                    horizontalAlignment: Text.AlignHCenter
                    lineHeight: Math.round(21 * Theme.textScale)
                    size: 14
                    width: sheet.width - 104
                }

                Item { height: 23; width: 1 }

                OnboardingAction {
                    anchors.horizontalCenter: parent.horizontalCenter
                    control: root.control
                    preferences: root.preferences
                    step: root.step
                }
            }
        }

        StepDots {
            anchors.bottom: forward.top
            anchors.bottomMargin: 20
            anchors.horizontalCenter: parent.horizontalCenter
            count: 3
            current: root.step
        }

        PrimaryButton {
            id: forward
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 28
            anchors.horizontalCenter: parent.horizontalCenter
            focus: true
            large: true
            text: root.isLast ? qsTr("Commencer") : qsTr("Suivant")
            width: Math.max(160, implicitWidth)

            onClicked: root.advance()
        }
    }
}
