import QtQuick
import Fenwhirl.Components

// A Label that wraps to as many lines as its text needs. No line begins with a unit or with closing punctuation.
//   content   the text, instead of Label's `text`; screen readers get it unchanged
Label {
    id: root

    required property string content

    Accessible.name: content
    text: DrawnText.of(content)
    wrapMode: Text.Wrap
}
