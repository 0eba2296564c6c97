import QtQuick
import Fenwhirl.Components

// A Label of as many lines as its text needs. None of them begins with a unit or with a sign that closes what stands before.
//   content   the text, in place of Label's own; a screen reader says it as it stands
Label {
    id: root

    required property string content

    Accessible.name: content
    text: DrawnText.of(content)
    wrapMode: Text.Wrap
}
