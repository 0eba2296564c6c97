import QtQuick
import QtTest
import Fenwhirl.Components

Rectangle {
    id: root
    color: Theme.card
    height: 100
    width: 300

    ValueBubble {
        id: bubble
        aim: 150
        designWidth: 96
        unit: "°C"
        reading: "63"
        y: 40
    }

    TestCase {
        name: "ValueBubble"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            Theme.textScale = 1
            bubble.aim = 150
            bubble.leftmost = 0
            bubble.atAxis = false
            bubble.rightmost = 300
            bubble.shown = true
            bubble.time = ""
            bubble.unit = "°C"
            bubble.reading = "63"
            bubble.widestTime = Qt.binding(() => bubble.time)
            bubble.widestValue = Qt.binding(() => bubble.reading)
        }

        function cleanupTestCase() {
            Theme.textScale = 1
        }

        function test_hasTheDesignedSizeWhateverItShows() {
            for (const value of ["7", "63", "100"]) {
                bubble.reading = value
                for (const time of ["", "14:32"]) {
                    bubble.time = time
                    tryCompare(bubble, "width", 96, 1000, value + " " + time) // once its texts have been laid out
                    compare(bubble.height, 22)
                }
            }
            bubble.atAxis = true
            compare(bubble.height, 20)
        }

        function test_growsWithLargerTexts() {
            Theme.textScale = 2
            compare(bubble.width, 192)
            compare(bubble.height, 38)
        }

        function test_holdsTheWidestValueFromTheBeginning() {
            bubble.widestTime = "00:00 PM"
            bubble.widestValue = "100"
            bubble.time = "9:05 AM"
            const width = bubble.width
            verify(width > 96)
            bubble.time = "12:05 PM"
            bubble.reading = "100"
            compare(bubble.width, width)
        }

        function test_aTextThatIsWiderThanExpectedIsNotCut() {
            bubble.reading = "9223372036854775807"
            const unit = findChild(bubble, "unit")
            const right = unit.mapToItem(bubble, unit.width, 0).x
            verify(right <= bubble.width - 8 + 1, right + " of " + bubble.width)
        }

        function test_staysCentredOnItsAimButWithinItsBounds() {
            compare(bubble.x, 150 - 48)
            bubble.aim = 10
            compare(bubble.x, 0)
            bubble.leftmost = -8
            compare(bubble.x, -8)
            bubble.aim = 1000
            compare(bubble.x, 300 - 96)
            bubble.rightmost = 306
            compare(bubble.x, 306 - 96)
        }

        function test_knowsWhatItTouches() {
            verify(bubble.touches(0, 103, 0))
            verify(!bubble.touches(0, 102, 0))
            verify(bubble.touches(0, 97, 6))
            verify(!bubble.touches(0, 96, 6))
            verify(bubble.touches(197, 250, 0))
            verify(!bubble.touches(198, 250, 0))
        }

        function test_isDrawnOnlyWhileItIsShown() {
            verify(Qt.colorEqual(grabImage(root).pixel(150, 44), Theme.popup))
            bubble.shown = false
            verify(!bubble.visible)
            verify(Qt.colorEqual(grabImage(root).pixel(150, 44), Theme.card))
        }

        function test_fadesInAndOut() {
            bubble.shown = false
            Theme.reducedMotion = false
            bubble.shown = true
            verify(bubble.opacity < 1)
            tryCompare(bubble, "opacity", 1)
            bubble.shown = false
            verify(bubble.visible)
            tryCompare(bubble, "visible", false)
        }

        function test_aScreenReaderPassesItOver() {
            verify(bubble.Accessible.ignored)
            for (const name of ["time", "value", "unit"])
                verify(findChild(bubble, name).Accessible.ignored, name)
        }
    }
}
