import QtQuick
import Fenwhirl.Components

// The invisible items through which a screen reader receives what the Announcer says while their window is active. A screen
// reader announces an item with the role of a notification when it becomes visible. Each of several texts at a time has an
// item of its own, which is hidden again once the text has been read.
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
        interval: 5000 // long, because a screen reader on a busy computer queries late

        onTriggered: {
            for (let i = 0; i < places.count; ++i)
                places.itemAt(i).visible = false
        }
    }
}
