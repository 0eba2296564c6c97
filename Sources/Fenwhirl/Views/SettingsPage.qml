import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The settings page: the user's preferences, the state of fan control, and the diagnostic report.
PageFrame {
    id: root

    ofText: true

    required property ViewModels models
    readonly property PreferencesView preferences: models.preferences

    Column {
        spacing: 18

        PageTitle {
            subtitle: root.preferences.versionText
            title: qsTr("Réglages")
            width: parent.width
        }

        Banners {
            control: root.models.control
            showsOffers: false
            width: parent.width
        }

        StartCard {
            preferences: root.preferences
            width: parent.width
        }

        AppearanceCard {
            preferences: root.preferences
            width: parent.width
        }

        Card {
            width: parent.width

            SettingRow {
                note: qsTr("« Automatique » suit la langue de ton Mac.")
                title: qsTr("Langue")

                LanguagePicker {
                    preferences: root.preferences
                }
            }
        }

        ThresholdsCard {
            preferences: root.preferences
            width: parent.width
        }

        ControlCard {
            control: root.models.control
            width: parent.width
        }

        ReportCard {
            report: root.models.report
            width: parent.width
        }
    }
}
