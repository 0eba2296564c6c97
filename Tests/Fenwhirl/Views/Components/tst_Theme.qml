import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 200
    width: 200

    Card {
        id: card
        width: 100
        Item { height: 10 }
    }

    TestCase {
        name: "Theme"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            Theme.dark = true
        }

        function cleanup() {
            Theme.reducedMotion = false
        }

        function test_switchingReResolvesEveryColorAtOnce() {
            verify(Qt.colorEqual(card.color, "#1F2229"))
            Theme.dark = false
            verify(Qt.colorEqual(card.color, "#FFFFFF"))
            verify(Qt.colorEqual(Theme.accent, "#0A84C6"))
            verify(Qt.colorEqual(Theme.window, "#F3F4F7"))
            Theme.dark = true
            verify(Qt.colorEqual(card.color, "#1F2229"))
        }

        function test_withMotionTheColorsFadeAndArrive() {
            Theme.reducedMotion = false
            Theme.dark = false
            verify(!Qt.colorEqual(card.color, "#FFFFFF"), "not at once")
            tryVerify(() => Qt.colorEqual(card.color, "#FFFFFF"))
            verify(Qt.colorEqual(Theme.hot, "#C2620A"))
        }

        function test_askingForLessMotionEndsARunningFade() {
            Theme.reducedMotion = false
            Theme.dark = false
            Theme.reducedMotion = true
            verify(Qt.colorEqual(card.color, "#FFFFFF"))
        }

        function test_reducedMotionMakesEveryDurationZero() {
            for (const name of ["press", "hover", "page", "switch", "pill", "popup", "banner", "gauge"])
                compare(Theme[name + "Duration"], 0, name)
            Theme.reducedMotion = false
            compare(Theme.gaugeDuration, 350)
            compare(Theme.pillDuration, 180)
        }
    }
}
