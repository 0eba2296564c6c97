pragma ComponentBehavior: Bound

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
        if (!onboarding.wanted || !onboarding.overlay || !content.covers(activeFocusItem))
            return
        const stops = keeper.stops(onboarding.overlay)
        if (KeyboardFocus.backwards())
            stops[stops.length - 1].forceActiveFocus(Qt.BacktabFocusReason)
        else
            stops[0].forceActiveFocus(Qt.TabFocusReason)
    }

    FocusKeeper {
        id: keeper
        first: sidebar
        scope: onboarding.wanted && onboarding.overlay ? onboarding.overlay : content

        // Orca asks about the switch of an application that is gone, and then says nothing of the one that has the focus now.
        onHandedOn: name => {
            if (root.models.pages.selectedName === "apps")
                Announcer.say(name)
        }
    }

    Announcements {
        models: root.models
    }

    // How the Mac is, in one sentence for those who hear it.
    Shortcut {
        sequences: ["F1"]

        onActivated: Announcer.say(root.models.machine.summary())
    }

    // The sidebar's own rows say by themselves which page they show.
    Connections {
        target: root.models.pages

        function onSelectedChanged() {
            if (!sidebar.hasFocus)
                Announcer.say(root.models.pages.selectedTitle)
        }
    }

    Shortcut {
        sequences: ["Ctrl+W"]

        onActivated: root.close()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]

        onActivated: root.models.quit()
    }

    // Not behind the introduction: what it covers must not change unseen.
    Repeater {
        model: 7

        Item {
            id: page
            required property int index

            Shortcut {
                enabled: !onboarding.wanted
                sequences: ["Ctrl+" + (page.index + 1)]

                onActivated: root.models.pages.selectedIndex = page.index
            }
        }
    }

    Shortcut {
        enabled: !onboarding.wanted
        sequences: ["Ctrl+,"]

        onActivated: root.models.pages.selectedIndex = 6 // the settings, the last of the seven
    }

    // Under everything else: what nothing there takes drags the window where its title bar is hidden. Elsewhere the title
    // bar does: under X11 a window that was dragged by its background has been seen to stick to the pointer afterwards.
    Item {
        anchors.fill: parent

        DragHandler {
            enabled: Qt.platform.os === "osx"
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

        // In the sidebar they scroll the page, too.
        Keys.onPressed: event => {
            event.accepted = event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp
            if (event.accepted)
                pageArea.scrollByPages(event.key === Qt.Key_PageDown ? 1 : -1)
        }

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
            windowWidth: root.width
        }

        PageArea {
            id: pageArea
            anchors.left: sidebar.right
            anchors.right: parent.right
            height: parent.height
            models: root.models
        }
    }

    Loader {
        id: onboarding
        readonly property bool wanted: !root.models.preferences.didOnboard
        readonly property var overlay: item

        anchors.fill: parent

        // Loaded by its address: a window without it need not know what it is made of.
        function load() {
            setSource("Onboarding.qml", {"control": root.models.control, "preferences": root.models.preferences})
        }

        onLoaded: {
            overlay.forceActiveFocus()
            overlay.gone.connect(() => onboarding.source = "")
        }
        onWantedChanged: {
            if (!wanted && overlay) {
                overlay.shown = false
                Announcer.say(root.models.pages.selectedTitle)
            } else if (wanted && !firstPicture.enabled) {
                load()
            }
        }
    }

    // The introduction fades in over the window, which need not wait for it.
    Connections {
        id: firstPicture
        target: root

        function onFrameSwapped() {
            enabled = false
            if (onboarding.wanted)
                onboarding.load()
        }
    }
}
