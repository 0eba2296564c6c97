import QtQuick
import Fenwhirl.Components

// Every component in its states, arranged like the drawing of the design that it is compared with.
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

    component Heading: Label {
        font.weight: Font.DemiBold
        size: 14
    }

    component Caption: Label {
        color: Theme.muted
        size: 11
    }

    component Captioned: Column {
        property alias caption: caption.text
        default property Item control

        spacing: 6

        onControlChanged: children = [control, caption]

        Caption { id: caption }
    }

    PageTitle {
        subtitle: ""
        title: "Components"
        width: 400
        x: 32
        y: 28
    }

    Column {
        spacing: 18
        width: 450
        x: 32
        y: 80

        Card {
            width: parent.width

            Column {
                spacing: 14

                Heading { text: "Buttons" }
                Row {
                    spacing: 8
                    Captioned { caption: "normal"; PrimaryButton { text: "Activer" } }
                    Captioned { caption: "pressed"; PrimaryButton { down: true; text: "Activer" } }
                    Captioned { caption: "focus"; PrimaryButton { id: focused; text: "Activer" } }
                    Captioned { caption: "disabled"; PrimaryButton { enabled: false; text: "Activer" } }
                }
                Row {
                    spacing: 8
                    Captioned { caption: "normal"; NeutralButton { text: "Quitter" } }
                    Captioned { caption: "pressed"; NeutralButton { down: true; text: "Quitter" } }
                    Captioned { caption: "disabled"; NeutralButton { enabled: false; text: "Quitter" } }
                }
                Row {
                    spacing: 8
                    Captioned { caption: "tinted"; SecondaryButton { text: "Activer le contrôle" } }
                    Captioned { caption: "destructive"; DestructiveButton { text: "Forcer la fermeture" } }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 14

                Heading { text: "Mode picker" }
                Repeater {
                    model: 3

                    Captioned {
                        id: entry
                        required property int index
                        caption: "normal"

                        ModePicker {
                            autoLabel: "Auto"
                            constantLabel: "Vitesse fixe"
                            currentIndex: entry.index
                            sensorLabel: "Selon un capteur"
                            width: 349
                        }
                    }
                }
            }
        }

        Card {
            id: sliders
            width: parent.width

            Column {
                spacing: 6

                Heading { text: "Slider" }
                Item { height: 1; width: 1 }
                Slider { from: 0; to: 100; value: 35.5; width: parent.width }
                Caption { text: "normal" }
                Slider { from: 0; to: 100; value: 35.5; width: parent.width }
                Caption { text: "normal" }
                Slider { from: 0; to: 100; value: 35.5; width: parent.width }
                Caption { text: "normal" }
                Slider { enabled: false; from: 0; to: 100; value: 35.5; width: parent.width }
                Caption { text: "disabled" }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 14

                Heading { text: "Switch and stepper" }
                Row {
                    spacing: 24
                    Captioned { caption: "on"; Switch { on: true } }
                    Captioned { caption: "off"; Switch { on: false } }
                    Captioned { caption: "focus"; Switch { on: true } }
                    Captioned { caption: "disabled"; Switch { enabled: false; on: true } }
                }
                Row {
                    spacing: 24
                    Captioned { caption: "normal"; Stepper { from: 30; stepSize: 5; to: 80; value: 50 } }
                    Captioned { caption: "at the minimum"; Stepper { from: 30; stepSize: 5; to: 80; value: 30 } }
                    Captioned { caption: "at the maximum"; Stepper { from: 30; stepSize: 5; to: 80; value: 80 } }
                }
            }
        }

        Card {
            width: parent.width

            Column {
                ChipRow { currentIndex: 2; labels: ["Auto", "Silencieux", "Équilibré", "Jeu", "Max"]; width: 308 }
                AppRow {
                    detail: "3 412 Mo"; divider: false; fraction: 0.37; iconSource: ""; name: "Blender"; on: true
                    protectedText: ""; shareText: "37 %"; width: parent.width
                }
                Row {
                    spacing: 12
                    Emblem {}
                    StatusDot { good: true }
                    StatusDot { good: false }
                    StepDots { count: 3; current: 1 }
                    Repeater {
                        model: ["cpu", "slider.horizontal.3", "gearshape", "flame", "gearshape.2"]
                        Symbol { required property string modelData; color: Theme.text; name: modelData }
                    }
                }
            }
        }
    }

    Column {
        spacing: 18
        width: 507
        x: 501
        y: 80

        Card {
            height: 260
            width: parent.width

            Item {
                Heading { text: "Menus" }
                DropDownMenu {
                    id: presets
                    caption: "Préréglage"; currentIndex: 2; currentText: "Équilibré"
                    labels: ["Auto", "Silencieux", "Équilibré", "Jeu", "Max"]
                    y: 32
                }
                PopupButton {
                    currentIndex: 0
                    labels: ["Température principale (processeur)", "Batterie", "Air (gauche)", "Cœur performance 01"]
                    width: 279; x: 188; y: 32
                }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 14

                Heading { text: "Sidebar rows" }
                Rectangle {
                    color: Theme.sidebar
                    height: 146
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
            height: 200
            width: parent.width

            Column {
                spacing: 14

                Heading { text: "Ring gauge: 0, 33 and 100 %" }
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

                Heading { text: "Sensor rows: hot from 80 °C, full at 100 °C" }
                Item { height: 0; width: 1 }
                SensorRow { fraction: 0.31; hot: false; peak: 0; peakHot: false; range: ""; name: "Batterie"; temperature: "31\u00a0°C"; width: parent.width }
                SensorRow { fraction: 0.79; hot: false; peak: 0.88; peakHot: true; range: "55 – 88 °C"; name: "Cœur performance 01"; temperature: "79\u00a0°C"; width: parent.width }
                SensorRow { fraction: 0.80; hot: true; peak: 0; peakHot: false; range: ""; name: "Cœur performance 09"; temperature: "80\u00a0°C"; width: parent.width }
                SensorRow { fraction: 1; hot: true; peak: 1; peakHot: true; range: ""; name: "Contrôleur de plateforme"; temperature: "104\u00a0°C"; width: parent.width }
            }
        }

        Card {
            width: parent.width

            Column {
                spacing: 14

                Heading { text: "Banners" }
                ErrorBanner { closable: true; message: "Ce Mac n'a pas accepté le changement de vitesse du ventilateur."; width: parent.width }
                HelperBanner {
                    actionText: "Activer"; busy: true; busyText: "Activation…"; color: Theme.well; stroke: "transparent"
                    message: "Pour changer la vitesse, Fenwhirl a besoin de ton mot de passe, une seule fois."
                    title: "Activer le contrôle des ventilateurs"; width: parent.width
                }
            }
        }
    }

    Component.onCompleted: presets.clicked()
}
