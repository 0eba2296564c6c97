import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The main temperature: its value, the health verdict, and a chart of the last ten minutes.
Card {
    id: root

    required property MachineView machine

    Item {
        implicitHeight: title.height + number.anchors.topMargin + number.height + chart.anchors.topMargin + chart.height

        Label {
            id: title
            font.weight: Font.DemiBold
            size: 14
            text: qsTr("Température du processeur")
            width: parent.width
        }

        TabularText {
            id: number
            Accessible.focusable: true
            Accessible.name: spoken
            activeFocusOnTab: true
            anchors.top: title.bottom
            anchors.topMargin: 4
            letterSpacing: -0.2
            size: 22
            text: root.machine.temperatureNumber
            weight: Font.Bold

            // On receiving the focus it says a summary of the whole machine. The summary does not change while it has the
            // focus, because screen readers announce every change of the focused item.
            property string spoken

            Binding on spoken {
                restoreMode: Binding.RestoreNone
                value: root.machine.temperatureText
                when: !number.activeFocus
            }

            onActiveFocusChanged: { if (activeFocus) spoken = root.machine.summary() }

            FocusRing {
                target: number
                targetRadius: 6
            }
        }

        Label {
            Accessible.ignored: true
            anchors.baseline: number.baseline
            anchors.left: number.right
            text: " °C" // i18n-ignore: the unit's sign
            textFormat: Text.PlainText
        }

        Row {
            anchors.right: parent.right
            anchors.verticalCenter: number.verticalCenter
            spacing: 6
            visible: root.machine.hasTemperature

            StatusDot {
                anchors.verticalCenter: parent.verticalCenter
                good: root.machine.healthy
                size: 8
            }

            Label {
                color: Theme.muted
                size: 12
                text: root.machine.statusDetail
            }
        }

        HistoryChart {
            id: chart
            anchors.top: number.bottom
            anchors.topMargin: 12
            description: qsTr("Température du processeur")
            endCaption: qsTr("maintenant")
            extent: root.machine.historyRange
            startCaption: qsTr("il y a 10 min")
            threshold: root.machine.alertLine
            times: root.machine.historyTimes
            values: root.machine.history
            width: parent.width
        }
    }
}
