import QtQuick
import Fenwhirl.Components

// Everything that is painted except text: gauge, chart, every symbol in its sizes, shadows and knobs. Used to
// compare renderers, each of which draws text in its own way.
Window {
    id: root

    required property bool dark

    color: Theme.card
    height: 400
    visible: true
    width: 460

    Binding {
        property: "dark"
        target: Theme
        value: root.dark
    }

    Row {
        spacing: 16
        x: 16
        y: 16

        Repeater {
            model: [0, 0.33, 1]

            RingArc {
                required property double modelData

                fraction: modelData
                trackColor: Theme.track
                valueColor: Theme.accent
            }
        }
    }

    LineChart {
        fillColor: Theme.chartFill
        gridColor: Theme.stroke
        height: 116
        inset: 8
        lineColor: Theme.accent
        surfaceColor: Theme.card
        values: [52, 53, 58, 57, 61, 66, 64, 63.5, 67, 59, 55, 54, 56, 63]
        width: 316
        x: 16
        y: 160
    }

    Grid {
        columns: 6
        spacing: 8
        x: 346
        y: 160

        Repeater {
            model: [
                "bell", "checkmark", "chevron.down", "chevron.up.chevron.down", "cpu", "exclamationmark.triangle", "fan",
                "fan.fill", "flame", "gearshape", "gearshape.2", "minus", "plus", "slider.horizontal.3", "square.grid.2x2",
                "thermometer.medium", "xmark",
            ]

            Symbol {
                required property string modelData

                color: Theme.secondaryText
                height: 11
                name: modelData
                width: 11
            }
        }
    }

    Row {
        spacing: 14
        x: 24
        y: 300

        Repeater {
            model: ["fan", "thermometer.medium", "cpu", "gearshape", "flame", "bell", "fan.fill"]

            Symbol {
                required property string modelData

                color: Theme.accent
                height: 42
                name: modelData
                width: 42
            }
        }
    }

    SoftShadow {
        blur: 12
        color: Theme.shadow
        height: 64
        radius: 11
        width: 100
        x: 346
        y: 236
    }

    Knob {
        x: 356
        y: 360
    }
}
