import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The status item's panel: the machine at a glance, presets, one slider per fan, and the ways on.
Window {
    id: root

    required property ViewModels models
    // What the screen leaves; a panel with very many fans scrolls inside it.
    property real maximumPanelHeight: 100000

    color: "transparent"
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    height: Math.min(panel.contentHeight, maximumPanelHeight)
    title: "Fenwhirl"
    width: Math.round(340 * Theme.textScale)

    onActiveFocusItemChanged: {
        if (activeFocusItem === null || activeFocusItem === contentItem)
            panel.forceActiveFocus()
    }

    onVisibleChanged: { if (visible) appear.restart() }

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

    WindowCorners {
        radius: surface.radius
    }

    Surface {
        id: surface
        anchors.fill: parent
        color: Theme.card
        radius: 14
        stroke: Theme.stroke
    }

    ScrollView {
        id: panel
        anchors.fill: parent
        focus: true
        padding: 16

        Column {
            spacing: 14

            MenuHeader {
                machine: root.models.machine
                width: parent.width
            }

            Divider {
                visible: temperatures.visible
                width: parent.width
            }

            Column {
                id: temperatures
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
                currentIndex: root.models.presets.activeIndex
                labels: root.models.presets.titles
                width: parent.width

                onActivated: index => root.models.presets.apply(index)
            }

            Divider {
                width: parent.width
            }

            Repeater {
                model: root.models.machine.fans

                MenuFanRow {
                    width: parent.width
                }
            }

            Divider {
                visible: root.models.machine.fans.count > 0
                width: parent.width
            }

            MenuActions {
                models: root.models
                width: parent.width
            }
        }
    }
}
