import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 400
    width: 400

    property bool shown: false
    // Where `next` has been since init(), each time with the opacity of what opens above it.
    property var passed: []

    Column {
        spacing: 18
        width: parent.width

        Rectangle { height: 50; width: parent.width }

        Item {
            height: place.height - 18
            width: parent.width

            Reveal {
                id: place
                gap: 18
                shown: root.shown
                width: parent.width

                ErrorBanner {
                    id: banner
                    message: root.shown ? "L'activation a été annulée ou a échoué." : ""
                }
            }
        }

        Rectangle {
            id: next
            height: 50
            width: parent.width

            onYChanged: root.passed.push({ "y": y, "opacity": place.opacity })
        }
    }

    Component {
        id: standing

        Reveal {
            shown: true

            Rectangle { height: 44 }
        }
    }

    TestCase {
        name: "Reveal"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.shown = false
            Theme.reducedMotion = false
            root.passed = []
        }

        function test_closedItLeavesNoTraceInItsColumn() {
            tryCompare(next, "y", 68)
            compare(place.visible, false)
        }

        function test_openingMovesWhatFollowsAndShowsTheContent() {
            const isBetween = at => at.y > 70 && at.y < 120 && at.opacity > 0 && at.opacity < 1
            // A busy computer may draw nothing between the beginning and the end of the animation, so it is repeated then.
            for (let i = 0; i < 10 && !root.passed.some(isBetween); ++i) {
                init()
                tryCompare(next, "y", 68)
                root.shown = true
                verify(place.progress < 0.1, "it has only begun to open")
                tryCompare(next, "y", 50 + 18 + 44 + 18)
                compare(place.opacity, 1)
                compare(banner.width, root.width)
            }
            verify(root.passed.some(isBetween), "it passes the places between")
        }

        function test_theTextStaysWhileItCloses() {
            root.shown = true
            tryCompare(place, "progress", 1)
            root.shown = false
            compare(accessibility.name(banner), "L'activation a été annulée ou a échoué.")
            verify(place.visible)
            tryCompare(place, "visible", false)
            tryCompare(next, "y", 68)
        }

        function test_withReducedMotionItIsThereAtOnce() {
            Theme.reducedMotion = true
            root.shown = true
            compare(place.progress, 1)
            tryCompare(next, "y", 130)
            root.shown = false
            compare(place.visible, false)
        }

        function test_whatIsShownFromTheBeginningDoesNotMove() {
            const there = createTemporaryObject(standing, root, {"width": 100})
            compare(there.height, 44)
            compare(there.opacity, 1)
        }
    }
}
