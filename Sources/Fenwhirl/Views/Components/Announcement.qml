import QtQuick
import Fenwhirl.Components

// The place in a window from which a screen reader hears what the Announcer says while that window is active. Nothing of it
// is seen. A screen reader says what becomes visible with the role of a notification; several texts at a time have a place
// each, and leave it when they have been read.
Item {
    id: root

    property int turn: 0

    function say(text: string) {
        const place = places.itemAt(turn % places.count)
        turn += 1
        place.visible = false
        place.Accessible.name = text
        place.visible = true
        hush.restart()
    }

    Connections {
        target: Announcer

        function onSaid(text: string) {
            if (root.Window.active)
                root.say(text)
        }
    }

    Repeater {
        id: places
        model: 4

        Item {
            Accessible.role: Accessible.Notification
            height: 1
            visible: false
            width: 1
        }
    }

    Timer {
        id: hush
        interval: 5000 // a screen reader on a busy computer asks late

        onTriggered: {
            for (let i = 0; i < places.count; ++i)
                places.itemAt(i).visible = false
        }
    }
}
