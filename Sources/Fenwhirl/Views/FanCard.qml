import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// One fan: its current state, and the controls that say how it is driven.
Card {
    id: root

    required property FanRow fan
    required property SensorChoices choices

    Accessible.name: fan.name
    Accessible.role: Accessible.Grouping

    Column {
        Column {
            spacing: 14
            width: parent.width

            Item {
                height: Math.max(gauge.height, titles.height)
                width: parent.width

                Column {
                    id: titles
                    anchors.left: parent.left
                    anchors.right: gauge.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 4

                    Paragraph {
                        content: root.fan.name
                        elide: Text.ElideRight
                        font.weight: Font.DemiBold
                        maximumLineCount: 3
                        size: 14
                        width: parent.width
                    }

                    Paragraph {
                        color: Theme.muted
                        content: root.fan.rangeText
                        size: 12
                        width: parent.width
                    }
                }

                RingGauge {
                    id: gauge
                    aim: root.fan.requestedFraction
                    aimText: root.fan.requestedText
                    anchors.right: parent.right
                    caption: qsTr("tr/min")
                    fraction: root.fan.speedFraction
                    valueText: root.fan.speedText
                }
            }

            Column {
                spacing: 6
                width: parent.width

                Label {
                    color: Theme.muted
                    line: 15
                    size: 12
                    text: qsTr("Mode")
                    width: parent.width
                }

                ModePicker {
                    autoLabel: qsTr("Auto")
                    constantLabel: qsTr("Vitesse fixe")
                    currentIndex: root.fan.mode
                    sensorLabel: qsTr("Selon un capteur")
                    text: qsTr("Mode")
                    width: parent.width

                    onActivated: index => root.fan.mode = index
                }
            }
        }

        // Contains only the controls that the mode needs. The height is animated when the mode changes, and follows all
        // other changes at once.
        Item {
            id: place
            readonly property real wanted: controls.item ? controls.height + 14 : 0
            property real from: 0
            property real progress: 1

            clip: progress < 1
            height: from + (wanted - from) * progress
            width: parent.width

            NumberAnimation {
                id: growth
                duration: Theme.bannerDuration
                easing.type: Easing.OutCubic
                from: 0
                property: "progress"
                target: place
                to: 1
            }

            Loader {
                id: controls
                readonly property int mode: root.fan.mode
                // False during the first load, which is not animated.
                property bool ready: false

                width: parent.width
                y: 14

                function load() {
                    if (mode === 1)
                        setSource("FanSpeedControls.qml", {"fan": root.fan})
                    else if (mode === 2)
                        setSource("FanCurveControls.qml", {"fan": root.fan, "choices": root.choices})
                    else
                        source = ""
                }

                Component.onCompleted: {
                    load()
                    ready = true
                }
                onModeChanged: {
                    if (!ready)
                        return
                    place.from = place.height
                    place.progress = 0
                    load()
                    growth.restart()
                }
            }
        }
    }
}
