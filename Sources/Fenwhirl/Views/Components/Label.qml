import QtQuick
import Fenwhirl.Components

// A plain text in one of the interface's sizes, with that size's line height.
//   size    pixels, 13 unless given (30 26 22 18 15 14 13 12 11)
//   text, color, font.weight, elide, wrapMode… as in Text. Never rich text. Long lines are cut at the right end.
Text {
    id: root

    property int size: 13
    readonly property real line: Theme.lineHeight(size)
    // Half the leading above the glyphs and half below, so that texts stand in the middle of their lines.
    readonly property real halfLeading: Math.round((line - metrics.height) / 2)

    color: Theme.text
    elide: wrapMode === Text.NoWrap ? Text.ElideRight : Text.ElideNone
    font.pixelSize: size
    lineHeight: line
    lineHeightMode: Text.FixedHeight
    textFormat: Text.PlainText
    topPadding: halfLeading
    bottomPadding: -halfLeading

    FontMetrics {
        id: metrics
        font: root.font
    }
}
