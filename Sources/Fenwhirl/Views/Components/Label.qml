import QtQuick
import Fenwhirl.Components

// A plain text in one of the interface's sizes, with the line height of that size.
//   size    designed size in pixels, 13 by default (30 26 22 18 15 14 13 12 11); drawn larger by Theme.textScale
//   line    designed line height; that of the size by default
//   text, color, font.weight, elide, wrapMode… as in Text. Never rich text. Long lines are elided at the right end.
Text {
    id: root

    property int size: 13
    property real line: Theme.lineHeight(size)
    readonly property real lineRoom: Math.round(line * Theme.textScale)
    readonly property bool wraps: wrapMode !== Text.NoWrap
    // Half the leading is above the glyphs and half below, so that texts are centred in their lines. A fixed line height
    // puts all of it below each line: the top padding pushes those glyphs down, and a negative bottom padding takes the same
    // height off the last line.
    readonly property real glyphHeight: GlyphBox.height(font)
    readonly property real halfLeading: Math.round((lineRoom - glyphHeight) / 2)

    Accessible.name: text
    Accessible.role: Accessible.StaticText
    color: Theme.text
    elide: wraps ? Text.ElideNone : Text.ElideRight
    font.pixelSize: Math.round(size * Theme.textScale)
    lineHeight: wraps ? lineRoom : 1
    lineHeightMode: wraps ? Text.FixedHeight : Text.ProportionalHeight
    textFormat: Text.PlainText
    topPadding: halfLeading
    bottomPadding: wraps ? -halfLeading : lineRoom - Math.ceil(glyphHeight) - halfLeading
}
