import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The status item's panel: the machine at a glance, presets, one slider per fan, and the action buttons.
FixedSizeWindow {
    id: root

    required property ViewModels models
    // The height available on the screen. A panel with very many fans scrolls within it.
    property real maximumPanelHeight: 100000
    // Whether the window can be translucent. If not, it is cut to the panel's shape.
    property bool composed: true
    // Whether the panel draws its own shadow, in a margin of the window.
    property bool shadowed: false
    readonly property real blur: shadowed ? 50 : 0
    readonly property real fall: shadowed ? 18 : 0
    // The panel's geometry in its window.
    readonly property rect panelArea: Qt.rect(blur, blur - fall, Math.round(340 * Theme.textScale),
                                              Math.min(panel.contentHeight, maximumPanelHeight))

    color: composed ? "transparent" : Theme.card
    fittingSize: Qt.size(panelArea.width + 2 * blur, panelArea.height + 2 * blur)
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    rim: blur
    title: "Fenwhirl"

    FocusKeeper {
        id: keeper
        first: chips
        scope: root.introduced ? panel : null
    }

    Announcements {
        models: root.models
    }

    // Whether the panel has said what it is. Until then none of its controls has the focus: a screen reader that learns of a
    // control before it has taken notice of the window does not say the control's group, and one that remembers the control
    // from the last time says nothing at all.
    property bool introduced: false

    onActiveChanged: {
        if (active)
            introduction.restart()
    }

    Timer { // deferred until Announcement, too, has seen the panel become active
        id: introduction
        interval: 0

        onTriggered: {
            if (root.introduced)
                return
            root.introduced = true
            keeper.reportActive()
            // Screen readers on Linux say the window's title by themselves.
            const title = Qt.platform.os === "osx" ? "Fenwhirl, " : "" // i18n-ignore: the product's name
            Announcer.say(title + root.models.machine.statusWord)
            if (nothing.activeFocus) // no control has been clicked meanwhile
                keeper.stops(chips)[0]?.forceActiveFocus(Qt.ActiveWindowFocusReason)
        }
    }

    Item {
        id: nothing
        focus: true
    }

    // Says a summary of the machine's state to screen readers.
    Shortcut {
        sequences: ["F1"]

        onActivated: Announcer.say(root.models.machine.summary())
    }

    onVisibleChanged: {
        introduced = false
        nothing.forceActiveFocus()
        if (visible) {
            appear.restart()
            fans.flash()
        }
    }

    ParallelAnimation {
        id: appear

        NumberAnimation {
            duration: Theme.popupDuration
            easing.type: Easing.OutCubic
            from: 0
            property: "opacity"
            target: root.contentItem
            to: 1
        }

        NumberAnimation {
            duration: Theme.popupDuration
            easing.type: Easing.OutCubic
            from: 0.97
            property: "scale"
            target: root.contentItem
            to: 1
        }
    }

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]

        onActivated: root.close()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]

        onActivated: root.models.quit()
    }

    WindowCorners {
        radius: root.composed ? 0 : surface.radius
    }

    // A press on the shadow counts as a press beside the panel, which closes it.
    MouseArea {
        anchors.fill: parent

        onPressed: mouse => {
            mouse.accepted = !surface.contains(mapToItem(surface, mouse.x, mouse.y))
            if (mouse.accepted)
                root.close()
        }
    }

    SoftShadow {
        blur: root.blur
        color: Theme.shadow
        height: surface.height + 2 * blur
        radius: surface.radius
        visible: root.shadowed
        width: surface.width + 2 * blur
        x: surface.x - blur
        y: surface.y + root.fall - blur
    }

    Surface {
        id: surface
        color: Theme.card
        height: root.panelArea.height
        radius: 14
        stroke: Theme.stroke
        width: root.panelArea.width
        x: root.panelArea.x
        y: root.panelArea.y
    }

    ScrollView {
        id: panel
        anchors.fill: surface
        padding: 16

        Column {
            id: content
            spacing: 14

            Column {
                id: head
                spacing: content.spacing
                width: parent.width

                MenuHeader {
                    control: root.models.control
                    machine: root.models.machine
                    width: parent.width
                }

                Divider {
                    visible: temperatures.visible
                    width: parent.width
                }

                Column {
                    id: temperatures
                    Accessible.name: qsTr("Capteurs")
                    Accessible.role: Accessible.List
                    spacing: 8
                    visible: root.models.machine.panelSensors.count > 0
                    width: parent.width

                    Repeater {
                        model: root.models.machine.panelSensors

                        MenuSensorRow {
                            width: parent.width
                        }
                    }
                }

                Divider {
                    width: parent.width
                }

                ChipRow {
                    id: chips
                    currentIndex: root.models.presets.activeIndex
                    labels: root.models.presets.titles
                    text: qsTr("Préréglage")
                    width: parent.width

                    onActivated: index => root.models.presets.apply(index)
                }
            }

            MenuFanList {
                id: fans
                machine: root.models.machine
                margin: panel.padding
                // What the other parts leave of the available height.
                room: root.maximumPanelHeight - 2 * panel.padding - head.height - actions.height - 2 * content.spacing
                visible: root.models.machine.fans.count > 0
                width: parent.width
            }

            Divider {
                visible: root.models.machine.fans.count === 0
                width: parent.width
            }

            MenuActions {
                id: actions
                models: root.models
                width: parent.width
            }
        }
    }
}
