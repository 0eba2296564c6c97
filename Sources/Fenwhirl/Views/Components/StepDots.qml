pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components

// The position in a short sequence: dots of 8, 8 apart.
//   count, current (from 0)
Row {
    id: root

    required property int count
    required property int current

    spacing: 8

    Repeater {
        model: root.count

        Rectangle {
            required property int index

            color: index === root.current ? Theme.accent : Theme.track
            height: 8
            radius: 4
            width: 8
        }
    }
}
