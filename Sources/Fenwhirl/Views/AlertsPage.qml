import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The alerts page: whether, and from which temperature, the user is warned that the Mac is getting too hot.
PageFrame {
    id: root

    ofText: true

    required property ViewModels models
    readonly property PreferencesView preferences: models.preferences

    Column {
        spacing: 18

        PageTitle {
            subtitle: qsTr("Sois prévenu avant que ton Mac ne souffre")
            title: qsTr("Alertes")
            width: parent.width
        }

        Card {
            width: parent.width

            Column {
                spacing: 18

                SettingRow {
                    note: qsTr("Une notification et un son se déclenchent au maximum une fois toutes les 5 minutes.")
                    title: qsTr("Prévenir quand le Mac chauffe trop")
                    width: parent.width

                    Switch {
                        on: root.preferences.alertsEnabled
                        text: qsTr("Prévenir quand le Mac chauffe trop")

                        onToggled: on => root.preferences.alertsEnabled = on
                    }
                }

                Divider {
                    width: parent.width
                }

                Column {
                    spacing: 20
                    width: parent.width

                    SliderGroup {
                        from: 60
                        spacing: 8
                        stepSize: 5
                        text: root.preferences.alertText
                        to: 100
                        value: root.preferences.alertThreshold
                        width: parent.width

                        onMoved: value => root.preferences.alertThreshold = value
                    }

                    NeutralButton {
                        text: qsTr("Tester l'alerte")

                        onClicked: {
                            root.preferences.testAlert()
                            Announcer.say(qsTr("Ceci est une alerte de test."))
                        }
                    }
                }
            }
        }
    }
}
