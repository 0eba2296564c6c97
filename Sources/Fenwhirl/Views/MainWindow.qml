import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The main window: the sidebar and the page it chose, and over them the onboarding until it is done.
Window {
    id: root

    required property ViewModels models

    color: Theme.window
    height: 680
    minimumHeight: 560
    minimumWidth: 920
    title: "Fenwhirl"
    width: 1040

    // The keyboard must not reach what the onboarding covers.
    onActiveFocusItemChanged: {
        if (onboarding.wanted && onboarding.item && content.covers(activeFocusItem))
            (onboarding.item as Onboarding).nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
    }

    Shortcut {
        sequences: ["Ctrl+W"]

        onActivated: root.close()
    }

    // Under everything else: what nothing there takes drags the window, whose title bar may be hidden.
    Item {
        anchors.fill: parent

        DragHandler {
            grabPermissions: PointerHandler.TakeOverForbidden
            target: null

            onActiveChanged: {
                if (active)
                    root.startSystemMove()
            }
        }
    }

    Item {
        id: content
        anchors.fill: parent

        function covers(item: Item): bool {
            for (let at = item; at; at = at.parent) {
                if (at === content)
                    return true
            }
            return false
        }

        Sidebar {
            id: sidebar
            height: parent.height
            machine: root.models.machine
            pages: root.models.pages
        }

        PageArea {
            anchors.left: sidebar.right
            anchors.right: parent.right
            height: parent.height
            models: root.models
        }
    }

    Loader {
        id: onboarding
        readonly property bool wanted: !root.models.preferences.didOnboard

        active: false
        anchors.fill: parent
        source: "Onboarding.qml"

        Component.onCompleted: active = wanted
        onLoaded: {
            const overlay = item as Onboarding
            overlay.control = root.models.control
            overlay.preferences = root.models.preferences
            overlay.forceActiveFocus()
            overlay.gone.connect(() => onboarding.active = false)
        }
        onWantedChanged: {
            if (wanted)
                active = true
            else if (item)
                (item as Onboarding).shown = false
        }
    }
}
