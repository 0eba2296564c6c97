import QtQuick
import Fenwhirl.Components

// The heading of a page.
//   title      26, bold
//   subtitle   13, muted, below it; takes no space when empty
Column {
    id: root

    required property string title
    required property string subtitle

    spacing: 3

    Accessible.name: title
    Accessible.role: Accessible.Heading

    Label {
        Accessible.ignored: true
        font.letterSpacing: -0.45 * Theme.textScale
        font.weight: Font.Bold
        size: 26
        text: root.title
        width: root.width
    }

    Paragraph {
        color: Theme.muted
        content: root.subtitle
        line: 16
        visible: text.length > 0
        width: root.width
    }
}
