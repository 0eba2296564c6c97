import QtQuick
import Fenwhirl.Components

// A LineChart with captions under its two ends.
//   values        the temperatures, oldest first
//   startCaption  under the left end
//   endCaption    under the right end
//   plotHeight    140 unless given
//   surface       colour of what it stands on
//   description   what a screen reader calls it
//   extent        what a screen reader says of it: between which values it moves
Item {
    id: root

    required property list<double> values
    required property string startCaption
    required property string endCaption
    property string description: ""
    property string extent: ""
    property real plotHeight: 140
    property color surface: Theme.card

    Accessible.description: extent
    Accessible.name: description
    Accessible.role: Accessible.Chart
    implicitHeight: plotHeight + 6 + start.height
    implicitWidth: 300

    LineChart {
        fillColor: Theme.chartFill
        gridColor: Theme.stroke
        height: root.plotHeight + 2 * inset
        inset: 8
        lineColor: Theme.accent
        surfaceColor: root.surface
        values: root.values
        width: root.width + 2 * inset
        x: -inset
        y: -inset
    }

    Label {
        id: start
        objectName: "startCaption"
        color: Theme.muted
        size: 12
        text: root.startCaption
        y: root.plotHeight + 6
    }

    Label {
        objectName: "endCaption"
        anchors.right: parent.right
        color: Theme.muted
        size: 12
        text: root.endCaption
        y: root.plotHeight + 6
    }
}
