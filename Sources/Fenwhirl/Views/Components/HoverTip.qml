import QtQuick

// A tooltip that says what a control without a text is for, while the pointer rests on it. Put it into the control.
//   text     in the user's language; empty for none
//   wanted   whether the pointer is over the control
//   tooltip  null until it is first needed
Item {
    id: root

    required property string text
    required property bool wanted
    readonly property alias tooltip: loader.made

    anchors.fill: parent

    onWantedChanged: { if (wanted && text !== "") loader.active = true }

    // Created when first needed, as in ElidedLabel.
    Loader {
        id: loader
        readonly property var made: item

        active: false
        source: "Tooltip.qml"

        onLoaded: {
            made.parent = root
            made.text = Qt.binding(() => root.text)
            made.visible = Qt.binding(() => root.wanted && root.text !== "")
        }
    }
}
