import QtQuick
import Fenwhirl.Components

// A plain text in one of the interface's sizes, with that size's line height.
//   size    pixels as designed, 13 unless given (30 26 22 18 15 14 13 12 11); drawn larger by Theme.textScale
//   line    height of a line as designed, that of the size unless given
//   text, color, font.weight, elide, wrapMode… as in Text. Never rich text. Long lines are cut at the right end.
Text {
    id: root

    property int size: 13
    property real line: Theme.lineHeight(size)
    readonly property real lineRoom: Math.round(line * Theme.textScale)
    readonly property bool wraps: wrapMode !== Text.NoWrap
    // Half the leading above the glyphs and half below, so that texts stand in the middle of their lines. A fixed line
    // height puts all of it below each line: there the glyphs are pushed down and the last line gives the rest back.
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
