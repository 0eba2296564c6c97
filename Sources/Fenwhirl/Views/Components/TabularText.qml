pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// A text whose digits all have the same width; use it wherever a number changes. It has one line, which is never elided or
// wrapped.
//   text, color, size (pixels as designed, as in Label), weight (Font.Normal), letterSpacing
//   baseline   that of the glyphs, for alignment with other texts: baselineOffset, as in Text
Item {
    id: root

    required property string text
    property color color: Theme.text
    property int size: 13
    property int weight: Font.Normal
    property real letterSpacing: 0
    readonly property real line: Math.round(Theme.lineHeight(size) * Theme.textScale)
    readonly property var runs: TabularRuns.of(DrawnText.of(text))

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    baselineOffset: Math.round((line - metrics.height) / 2) + metrics.ascent
    implicitHeight: line
    implicitWidth: cells.implicitWidth

    FontMetrics {
        id: metrics
        font.letterSpacing: root.letterSpacing * Theme.textScale
        font.pixelSize: Math.round(root.size * Theme.textScale)
        font.weight: root.weight
    }

    TextMetrics {
        id: zero
        font: metrics.font
        text: "0"
    }

    Row {
        id: cells
        // As in Label, so that both have the same baseline in the same size.
        y: Math.round((root.line - metrics.height) / 2)

        Repeater {
            model: root.runs.length

            Text {
                required property int index
                readonly property string run: root.runs[index] ?? ""
                readonly property bool digit: run.length === 1 && run >= "0" && run <= "9"

                Accessible.ignored: true
                color: root.color
                font: metrics.font
                horizontalAlignment: Text.AlignHCenter
                text: run
                textFormat: Text.PlainText
                width: digit ? zero.advanceWidth : implicitWidth
            }
        }
    }
}
