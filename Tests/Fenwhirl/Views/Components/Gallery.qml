import QtQuick
import Fenwhirl.Components

// Every component with its states, laid out like the drawing of the design it is compared with.
Window {
    id: root

    required property bool dark

    color: Theme.window
    height: 1278
    visible: true
    width: 1040

    Binding {
        property: "dark"
        target: Theme
        value: root.dark
    }

    PageTitle {
        subtitle: ""
        title: "Components"
        width: 400
        x: 32
        y: 28
    }

    component Caption: Label {
        color: Theme.muted
        size: 11
    }

    component Column1: Column {
        width: 450
        spacing: 18
        x: 32
        y: 80
    }

    Column1 {
        Card {
            width: parent.width

            Column {
                spacing: 6

                Label { font.weight: Font.DemiBold; size: 14; text: "Buttons" }
                Item { height: 4; width: 1 }
                Row {
                    spacing: 8
                    Column { spacing: 5; PrimaryButton { text: "Activer" } Caption { text: "normal" } }
                    Column { spacing: 5; PrimaryButton { down: true; text: "Activer" } Caption { text: "pressed" } }
                    Column { spacing: 5; PrimaryButton { id: focused; focus: true; text: "Activer" } Caption { text: "focus" } }
                    Column { spacing: 5; PrimaryButton { enabled: false; text: "Activer" } Caption { text: "disabled" } }
                }
                Row {
                    spacing: 8
                    Column { spacing: 5; NeutralButton { text: "Quitter" } Caption { text: "normal" } }
                    Column { spacing: 5; NeutralButton { down: true; text: "Quitter" } Caption { text: "pressed" } }
                    Column { spacing: 5; NeutralButton { enabled: false; text: "Quitter" } Caption { text: "disabled" } }
                }
                Row {
                    spacing: 8
                    Column { spacing: 5; SecondaryButton { text: "Activer le contrôle" } Caption { text: "tinted" } }
                    Column { spacing: 5; DestructiveButton { text: "Forcer la fermeture" } Caption { text: "destructive" } }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 10

                Label { font.weight: Font.DemiBold; size: 14; text: "Mode picker" }
                Repeater {
                    model: 3
                    ModePicker {
                        required property int index
                        autoLabel: "Auto"
                        constantLabel: "Vitesse fixe"
                        currentIndex: index
                        sensorLabel: "Selon un capteur"
                        width: 349
                    }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 6

                Label { font.weight: Font.DemiBold; size: 14; text: "Slider" }
                Item { height: 4; width: 1 }
                Slider { from: 0; to: 100; value: 35.7; width: parent.width }
                Caption { text: "normal" }
                Slider { enabled: false; from: 0; to: 100; value: 35.7; width: parent.width }
                Caption { text: "disabled" }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 12

                Label { font.weight: Font.DemiBold; size: 14; text: "Switch and stepper" }
                Row {
                    spacing: 24
                    Switch { on: true }
                    Switch { on: false }
                    Switch { enabled: false; on: true }
                }
                Row {
                    spacing: 24
                    Stepper { from: 30; stepSize: 5; to: 80; value: 50 }
                    Stepper { from: 30; stepSize: 5; to: 80; value: 30 }
                    Stepper { from: 30; stepSize: 5; to: 80; value: 80 }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 12

                Row {
                    spacing: 12
                    Emblem {}
                    StatusDot { good: true }
                    StatusDot { good: false }
                    StepDots { count: 3; current: 1 }
                    Repeater {
                        model: ["square.grid.2x2", "fan", "thermometer.medium", "cpu", "slider.horizontal.3", "bell", "gearshape", "flame", "gearshape.2"]
                        Symbol { required property string modelData; color: Theme.text; name: modelData }
                    }
                }
                ChipRow { currentIndex: 2; labels: ["Auto", "Silencieux", "Équilibré", "Jeu", "Max"]; width: 308 }
                AppRow {
                    detail: "3 412 Mo"; fraction: 0.37; iconSource: ""; name: "Blender"; on: true; protectedText: ""
                    shareText: "37 %"; width: parent.width
                }
                AppRow {
                    detail: "412 Mo"; divider: false; fraction: 0.01; iconSource: ""; name: "Affichage des fenêtres de macOS"; on: true
                    protectedText: "Protégé"; shareText: "1 %"; width: parent.width
                }
            }
        }
    }

    Column {
        spacing: 18
        width: 506
        x: 502
        y: 80

        Card {
            height: 260
            width: parent.width

            Item {
                Label { font.weight: Font.DemiBold; size: 14; text: "Menus" }
                DropDownMenu {
                    id: presets
                    caption: "Préréglage"; currentIndex: 2; currentText: "Équilibré"
                    labels: ["Auto", "Silencieux", "Équilibré", "Jeu", "Max"]
                    y: 32
                }
                PopupButton {
                    currentIndex: 0
                    labels: ["Température principale (processeur)", "Batterie", "Air (gauche)", "Cœur performance 01"]
                    width: 279; x: 189; y: 32
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 14

                Label { font.weight: Font.DemiBold; size: 14; text: "Sidebar rows" }
                Rectangle {
                    color: Theme.sidebar
                    height: 140
                    radius: 12
                    width: parent.width

                    SidebarRow { selected: false; symbol: "square.grid.2x2"; text: "Tableau de bord"; x: 10; y: 10 }
                    SidebarRow { selected: false; symbol: "fan"; text: "Ventilateurs"; x: 214; y: 10 }
                    SidebarRow { selected: true; symbol: "thermometer.medium"; text: "Capteurs"; x: 10; y: 77 }
                    SidebarRow { selected: false; symbol: "bell"; text: "Alertes"; x: 214; y: 77 }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 14

                Label { font.weight: Font.DemiBold; size: 14; text: "Ring gauge: 0, 33 and 100 %" }
                Row {
                    spacing: 42
                    RingGauge { caption: "tr/min"; fraction: 0; valueText: "1\u202f196" }
                    RingGauge { caption: "tr/min"; fraction: 0.33; valueText: "2\u202f694" }
                    RingGauge { caption: "tr/min"; fraction: 1; valueText: "5\u202f777" }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 12

                Label { font.weight: Font.DemiBold; size: 14; text: "Sensor rows: hot from 80 °C, full at 100 °C" }
                SensorRow { fraction: 0.31; hot: false; name: "Batterie"; temperature: "31\u00a0°C"; width: parent.width }
                SensorRow { fraction: 0.79; hot: false; name: "Cœur performance 01"; temperature: "79\u00a0°C"; width: parent.width }
                SensorRow { fraction: 0.80; hot: true; name: "Contrôleur de plateforme"; temperature: "80\u00a0°C"; width: parent.width }
                SensorRow { fraction: 1; hot: true; name: "Cœur performance 0D"; temperature: "104\u00a0°C"; width: parent.width }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 12

                Label { font.weight: Font.DemiBold; size: 14; text: "Banners" }
                ErrorBanner { closable: true; message: "Ce Mac n'a pas accepté le changement de vitesse du ventilateur."; width: parent.width }
                HelperBanner {
                    actionText: "Activer"; busy: true; busyText: "Activation…"; color: Theme.well; stroke: "transparent"
                    message: "Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois."
                    title: "Activer le contrôle des ventilateurs"; width: parent.width
                }
                HistoryChart {
                    endCaption: "maintenant"; plotHeight: 60; startCaption: "il y a 10 min"; width: parent.width
                    values: [50, 52, 51, 55, 60, 58, 57, 62, 66, 61, 58]
                }
            }
        }
    }

    Component.onCompleted: presets.menu.open()
}
