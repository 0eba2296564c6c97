pragma ComponentBehavior: Bound

import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The main window: the sidebar and the selected page, covered by the onboarding until that is done.
Window {
    id: root

    required property ViewModels models

    color: Theme.window
    height: 680
    minimumHeight: 560
    minimumWidth: 920
    title: "Fenwhirl"
    width: 1040

    // Keeps the keyboard focus inside the onboarding while it covers the window: Tab wraps around.
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

        // When the focused switch of an application vanishes, Orca queries the vanished switch and then does not announce
        // the control that has the focus now.
        onFocusMoved: name => {
            if (root.models.pages.selectedName === "apps" && !pageTold.running)
                Announcer.say(name)
        }
    }

    Announcements {
        models: root.models
    }

    // Says a summary of the machine's state to screen readers.
    Shortcut {
        sequences: ["F1"]

        onActivated: Announcer.say(root.models.machine.summary())
    }

    // Announces the new page, except while the sidebar has the focus: its rows announce their pages themselves.
    Connections {
        target: root.models.pages

        function onSelectedChanged() {
            if (!sidebar.hasFocus) {
                Announcer.say(root.models.pages.selectedTitle)
                pageTold.restart()
            }
        }
    }

    Timer { // runs while the focus goes from the page that was left to the new one's row
        id: pageTold
        interval: 2000
    }

    Shortcut {
        sequences: ["Ctrl+W"]

        onActivated: root.close()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]

        onActivated: root.models.quit()
    }

    // Disabled during the onboarding: what it covers must not change unseen.
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

        onActivated: root.models.pages.selectedIndex = 6 // the settings page, the last of the seven
    }

    // On macOS, where the title bar is hidden, dragging the background moves the window. This item lies below everything
    // else, so it gets only the presses that nothing else takes. On other systems the title bar moves the window: under
    // openbox and IceWM a window that is dragged by its background sticks to the pointer after the release.
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
        // What the onboarding covers is hidden from screen readers.
        readonly property bool accessibleCovered: onboarding.wanted && onboarding.overlay !== null

        Accessible.role: Accessible.Client
        anchors.fill: parent

        // Page Up and Page Down scroll the page even while the sidebar has the focus.
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

        // Loaded by URL, so that a window without the onboarding need not load the types it consists of.
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

    // Loads the onboarding after the first frame: it fades in over the window, which need not wait for it.
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
