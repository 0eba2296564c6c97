import QtQuick
import QtTest
import Fenwhirl.Components

Rectangle {
    id: root
    color: Theme.card
    height: 240
    width: 340

    HistoryChart {
        id: chart
        description: "Température du processeur"
        endCaption: "maintenant"
        extent: "50 °C – 60 °C"
        startCaption: "il y a 10 min"
        values: []
        width: 300
        x: 20
        y: 20
    }

    // Another control that can take the focus.
    Item {
        id: elsewhere
        activeFocusOnTab: true
    }

    TestCase {
        id: tests
        name: "HistoryChart"
        when: windowShown

        readonly property real noon: new Date(2026, 10, 22, 12, 0).getTime()

        function init() {
            Theme.reducedMotion = true
            Theme.dark = true
            Theme.textScale = 1
            elsewhere.forceActiveFocus()
            mouseMove(root, 5, 235)
            chart.threshold = NaN
            chart.width = 300
            show([])
        }

        function cleanupTestCase() {
            Theme.textScale = 1
        }

        // Successive values are one minute apart.
        function show(values) {
            chart.values = values
            chart.times = values.map((_, i) => noon + i * 60000)
        }

        function picture(values): var {
            show(values)
            return grabImage(root)
        }

        function blue(image, x: real, y: real): bool {
            return Qt.colorEqual(image.pixel(x, y), Theme.accent)
        }

        // The rows of the plot, at that x of the window, whose colour differs from the card's.
        function rows(image, x: real): var {
            const found = []
            for (let y = 15; y < 165; ++y) {
                if (!Qt.colorEqual(image.pixel(x, y), Theme.card))
                    found.push(y - 20)
            }
            return found
        }

        function inked(image, fromX: real, toX: real, fromY: real, toY: real): bool {
            for (let y = fromY; y < toY; ++y) {
                for (let x = fromX; x < toX; ++x) {
                    if (!Qt.colorEqual(image.pixel(x, y), Theme.card))
                        return true
                }
            }
            return false
        }

        function reading(): string {
            return chart.Accessible.description
        }

        function shown(): string {
            return findChild(bubble(), "time").text + ", " + findChild(bubble(), "value").text + " °C"
        }

        function bubble(): var {
            return chart.bubble
        }

        function test_oneSampleDrawsOnlyTheGrid() {
            const image = picture([50])
            for (let y = 20; y < 160; ++y)
                verify(!blue(image, 100, y), y)
            verify(!Qt.colorEqual(image.pixel(100, 20), Theme.card), "the topmost grid line")
            verify(!Qt.colorEqual(image.pixel(100, 159), Theme.card), "the lowest grid line")
        }

        function test_withoutALineFivePlainOnesOnWholePixelsSpanTheWholeWidth() {
            const image = picture([])
            for (const x of [20, 100, 319])
                compare(rows(image, x), [0, 35, 70, 104, 139])
            compare(findChild(chart, "startCaption").x, 0)
        }

        function test_theScaleHasLinesAtRoundTemperaturesAndNumbersBesideThem() {
            // 52 to 72 degrees at seven points per degree: 70, 65, 60 and 55 lie at 14, 49, 84 and 119.
            const image = picture([55, 69])
            compare(rows(image, 20 + 260).filter(y => y < 30), [14])
            verify(inked(image, 20, 34, 20 + 14 - 5, 20 + 14 + 5), "the number 70")
            verify(inked(image, 20, 34, 20 + 119 - 5, 20 + 119 + 5), "the number 55")
            verify(!inked(image, 20, 43, 20 + 28, 20 + 36), "nothing between two numbers")
            verify(!inked(image, 40, 42, 20, 20 + 160), "no line in the scale's column")
        }

        function test_theLineBeginsBesideTheScale() {
            const image = picture([50, 50])
            verify(!blue(image, 20 + 20, 118))
            verify(blue(image, 20 + 25, 118))
            verify(blue(image, 20 + 299, 118))
        }

        function test_twoEqualSamplesLieAtThirtyPercent() {
            const image = picture([50, 50])
            verify(blue(image, 150, 20 + 98), "70 % of 140 from the top")
            verify(!blue(image, 150, 20 + 90))
        }

        function test_theThresholdIsDashedWhereTheRangeIncludesIt() {
            chart.threshold = 65
            const hot = image => {
                let count = 0
                for (let x = 44; x < 200; ++x) {
                    const pixel = image.pixel(x, 20 + 49)
                    if (pixel.r > pixel.b + 0.3)
                        ++count
                }
                return count
            }
            const dashes = hot(picture([55, 55, 69]))
            verify(dashes > 156 * 4 / 7 - 6 && dashes < 156 * 4 / 7 + 6, dashes)
            chart.threshold = 90
            compare(hot(grabImage(root)), 0)
            chart.threshold = NaN
            compare(hot(grabImage(root)), 0)
        }

        function test_theLastValueCarriesADotThatReachesBeyondThePlot() {
            const image = picture([50, 50])
            verify(blue(image, 320 + 2, 118))
        }

        function test_captionsAreFlushWithThePlotAndSixBelow() {
            show([50, 50])
            compare(chart.implicitHeight, 140 + 6 + 16)
            const start = findChild(chart, "startCaption")
            const end = findChild(chart, "endCaption")
            compare(start.x, 24)
            compare(end.x + end.width, 300)
            compare(start.y, 146)
        }

        function test_thePointerReadsTheNearestSampleWithItsTime() {
            show([50, 52, 54, 56, 58])
            compare(reading(), "50 °C – 60 °C")
            mouseMove(chart, 24 + 69 + 30, 50) // samples are 69 points apart
            compare(reading(), "12:01, 52 °C")
            mouseMove(chart, 24 + 69 + 40, 50)
            compare(reading(), "12:02, 54 °C")
            mouseMove(chart, 2, 100) // over the scale
            compare(reading(), "12:00, 50 °C")
            mouseMove(chart, 299, 158) // over a caption
            compare(reading(), "12:04, 58 °C")
            compare(findChild(bubble(), "time").text, "12:04")
            compare(findChild(bubble(), "value").text, "58")
            mouseMove(root, 5, 235)
            compare(reading(), "50 °C – 60 °C")
            verify(!bubble().visible)
        }

        function test_aFingerReadsWhileItIsDown() {
            show([50, 52, 54, 56, 58])
            const touch = touchEvent(chart)
            touch.press(0, chart, 24 + 69, 50).commit()
            compare(reading(), "12:01, 52 °C")
            touch.move(0, chart, 24 + 138, 60).commit()
            tryVerify(() => reading() === "12:02, 54 °C") // moves are delivered with the next frame
            touch.release(0, chart, 24 + 138, 60).commit()
            tryVerify(() => reading() === "50 °C – 60 °C")
        }

        function test_theBubbleLiesOnTheAxisAndStaysWithinItsBounds() {
            show([50, 52, 54, 56, 58])
            mouseMove(chart, 162, 20)
            compare(bubble().y, 144)
            compare(bubble().height, 20)
            compare(bubble().x + bubble().width / 2, 24 + 138)
            mouseMove(chart, 2, 20)
            compare(bubble().x, 14)
            mouseMove(chart, 298, 20)
            compare(bubble().x + bubble().width, 306)
        }

        function test_aCaptionThatTheBubbleTouchesGoesAsAWhole() {
            show([50, 52, 54, 56, 58])
            const start = findChild(chart, "startCaption")
            const end = findChild(chart, "endCaption")
            mouseMove(chart, 26, 20)
            compare([start.opacity, end.opacity], [0, 1])
            mouseMove(chart, 298, 20)
            compare([start.opacity, end.opacity], [1, 0])
            mouseMove(root, 5, 235)
            compare([start.opacity, end.opacity], [1, 1])
        }

        function test_theHairlineRunsFromThePlotsTopToFourBelow() {
            show([50, 50, 50])
            const bare = grabImage(root)
            mouseMove(chart, 162, 20)
            const image = grabImage(root)
            const x = 20 + 162 - 1 // a line one point wide begins half a point left of its position
            const changed = y => !Qt.colorEqual(image.pixel(x, y), bare.pixel(x, y))
                                 || !Qt.colorEqual(image.pixel(x + 1, y), bare.pixel(x + 1, y))
            verify(changed(20))
            verify(changed(20 + 143))
            verify(!changed(19))
            verify(blue(image, 20 + 162, 20 + 98), "the dot")
            verify(!blue(image, 20 + 162, 20 + 98 - 5), "its ring in the card's colour")
        }

        function test_theEndDotHidesBesideTheCursor() {
            const values = []
            for (let i = 0; i < 277; ++i)
                values.push(50)
            show(values)
            verify(blue(grabImage(root), 320 + 2, 118))
            mouseMove(chart, 300 - 11, 20)
            verify(!blue(grabImage(root), 320 + 2, 118))
            mouseMove(chart, 300 - 14, 20)
            verify(blue(grabImage(root), 320 + 2, 118))
        }

        function test_underThePointerTheCursorStaysAndItsValueChanges() {
            show([50, 52, 54, 56, 58])
            mouseMove(chart, 24 + 138, 20)
            compare(reading(), "12:02, 54 °C")
            const x = bubble().x
            chart.values = [52, 54, 56, 58, 60]
            chart.times = chart.times.map(time => time + 60000)
            compare(reading(), "12:03, 56 °C")
            compare(bubble().x, x)
        }

        function test_theFocusReadsTheLastSampleAndKeysMoveIt() {
            const values = []
            for (let i = 0; i < 100; ++i)
                values.push(40 + i / 10)
            show(values)
            keyClick(Qt.Key_Tab)
            verify(chart.activeFocus)
            compare(reading(), "13:39, 50 °C")
            for (const [key, modifier, expected] of [
                    [Qt.Key_Right, Qt.NoModifier, "13:39, 50 °C"],
                    [Qt.Key_Left, Qt.NoModifier, "13:38, 50 °C"],
                    [Qt.Key_PageUp, Qt.NoModifier, "13:08, 47 °C"],
                    [Qt.Key_Left, Qt.ShiftModifier, "12:38, 44 °C"],
                    [Qt.Key_Right, Qt.NoModifier, "12:39, 44 °C"],
                    [Qt.Key_Home, Qt.NoModifier, "12:00, 40 °C"],
                    [Qt.Key_Left, Qt.NoModifier, "12:00, 40 °C"],
                    [Qt.Key_PageDown, Qt.NoModifier, "12:30, 43 °C"],
                    [Qt.Key_Right, Qt.ShiftModifier, "13:00, 46 °C"],
                    [Qt.Key_Home, Qt.NoModifier, "12:00, 40 °C"],
                    [Qt.Key_PageUp, Qt.NoModifier, "12:00, 40 °C"],
                    [Qt.Key_End, Qt.NoModifier, "13:39, 50 °C"]]) {
                keyClick(key, modifier)
                compare(reading(), expected)
            }
            keyClick(Qt.Key_Escape)
            compare(reading(), "50 °C – 60 °C")
            keyClick(Qt.Key_Left)
            compare(reading(), "13:38, 50 °C")
            elsewhere.forceActiveFocus()
            compare(reading(), "50 °C – 60 °C")
        }

        function test_onlyTheKeyboardsCursorHasARing() {
            show([50, 50, 50])
            mouseMove(chart, 162, 20)
            const nine = image => blue(image, 20 + 162, 20 + 98 - 9) || blue(image, 20 + 162, 20 + 98 - 10)
            verify(!nine(grabImage(root)))
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_Left)
            verify(nine(grabImage(root)))
            mouseMove(chart, 160, 30)
            verify(!nine(grabImage(root)))
        }

        function test_byKeyboardTheCursorStaysOnItsSample() {
            show([50, 52, 54, 56, 58])
            keyClick(Qt.Key_Tab)
            const add = value => {
                chart.values = chart.values.slice(1).concat([value])
                chart.times = chart.times.map(time => time + 60000)
            }
            add(60)
            compare(shown(), "12:05, 60 °C") // the cursor was on the last sample and follows it
            keyClick(Qt.Key_Left)
            compare(shown(), "12:04, 58 °C")
            add(61)
            compare(shown(), "12:04, 58 °C")
            add(62)
            add(63)
            compare(shown(), "12:04, 58 °C")
            add(64) // the sample under the cursor has left the chart
            compare(shown(), "12:05, 60 °C")
            add(65)
            compare(shown(), "12:06, 61 °C")
        }

        function test_byKeyboardTheCursorStaysOnItsSampleWhileTheSeriesGrows() {
            show([50, 52, 54])
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_Left)
            compare(shown(), "12:01, 52 °C")
            chart.values = [50, 52, 54, 56, 58]
            chart.times = [0, 1, 2, 3, 4].map(i => noon + i * 60000)
            compare(shown(), "12:01, 52 °C")
        }

        function test_whatArrivesUnderTheKeyboardsCursorIsShownButNotSpoken() {
            show([50, 52, 54])
            keyClick(Qt.Key_Tab)
            compare(reading(), "12:02, 54 °C")
            show([50, 52, 54, 58])
            compare(shown(), "12:03, 58 °C")
            compare(reading(), "12:02, 54 °C")
            keyClick(Qt.Key_End)
            compare(reading(), "12:03, 58 °C")
            show([])
            compare(reading(), "50 °C – 60 °C")
        }

        function test_anInterruptionShowsInTheTimes() {
            chart.values = [50, 52, 54]
            chart.times = [noon, noon + 2000, noon + 8 * 3600000]
            mouseMove(chart, 298, 20)
            compare(reading(), "20:00, 54 °C")
            mouseMove(chart, 160, 20)
            compare(reading(), "12:00, 52 °C")
        }

        function test_withFewerThanTwoSamplesNothingIsRead() {
            for (const values of [[], [50]]) {
                show(values)
                mouseMove(chart, 100, 20)
                compare(reading(), "50 °C – 60 °C")
                verify(!chart.activeFocusOnTab)
                mouseMove(root, 5, 235)
            }
        }

        function test_theCursorGoesWithTheLine() {
            show([50, 52, 54])
            mouseMove(chart, 100, 20)
            verify(bubble().visible)
            show([])
            compare(reading(), "50 °C – 60 °C")
            verify(!bubble().visible)
        }

        function test_valuesThatAreNoNumbersAreNotRead() {
            show([NaN, 52, NaN, Infinity, 58, -Infinity])
            mouseMove(chart, 2, 20)
            compare(reading(), "12:01, 52 °C")
            mouseMove(chart, 299, 20)
            compare(reading(), "12:04, 58 °C")
            mouseMove(root, 5, 235)
            keyClick(Qt.Key_Tab)
            compare(reading(), "12:04, 58 °C")
            keyClick(Qt.Key_Left)
            compare(reading(), "12:01, 52 °C")
            keyClick(Qt.Key_Left)
            compare(reading(), "12:01, 52 °C")
            keyClick(Qt.Key_Right)
            compare(reading(), "12:04, 58 °C")
            keyClick(Qt.Key_Right)
            compare(reading(), "12:04, 58 °C")
        }

        function test_valuesBeyondAllTemperaturesDrawSomething() {
            for (const values of [[1e300, -1e300], [1.7e308, -1.7e308], [1e17, 1e17], [0, 1e9]]) {
                show(values)
                mouseMove(chart, 150, 20)
                mouseMove(chart, 170, 20)
                verify(grabImage(root).width > 0)
            }
        }

        function test_withoutTimesOnlyTheTemperatureIsRead() {
            chart.values = [50, 52, 54]
            chart.times = []
            mouseMove(chart, 162, 20)
            compare(reading(), "52 °C")
            compare(findChild(bubble(), "time").text, "")
        }

        function test_columnAndPlotGrowWithLargerTexts() {
            Theme.textScale = 2
            chart.width = 320
            show([50, 52, 54])
            const start = findChild(chart, "startCaption")
            compare(start.x, 48)
            mouseMove(chart, 48 + 136, 20)
            compare(reading(), "12:01, 52 °C")
            verify(bubble().width >= 192)
            verify(inked(grabImage(root), 20, 60, 20, 160), "numbers")
        }

        function test_theCursorFadesOutButComesAtOnce() {
            show([50, 52, 54])
            mouseMove(chart, 162, 20)
            mouseMove(root, 5, 235)
            Theme.reducedMotion = false
            mouseMove(chart, 162, 20)
            verify(blue(grabImage(root), 20 + 162, 20 + 140 - 140 * 5 / 10))
            tryCompare(bubble(), "opacity", 1)
            mouseMove(root, 5, 235)
            verify(bubble().visible)
            tryCompare(bubble(), "visible", false)
        }
    }
}
