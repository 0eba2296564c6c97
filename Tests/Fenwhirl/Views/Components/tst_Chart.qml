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
        startCaption: "il y a 10 min"
        values: []
        width: 300
        x: 20
        y: 20
    }

    TestCase {
        name: "HistoryChart"
        when: windowShown

        function initTestCase() {
            Theme.reducedMotion = true
            Theme.dark = true
        }

        function picture(values): var {
            chart.values = values
            return grabImage(root)
        }

        function blue(image, x: real, y: real): bool {
            return Qt.colorEqual(image.pixel(x, y), Theme.accent)
        }

        function test_oneSampleDrawsOnlyTheGrid() {
            const image = picture([50])
            for (let y = 20; y < 160; ++y)
                verify(!blue(image, 100, y), y)
            verify(!Qt.colorEqual(image.pixel(100, 20), Theme.card), "the topmost grid line")
            verify(!Qt.colorEqual(image.pixel(100, 159), Theme.card), "the lowest grid line")
        }

        function test_fiveGridLinesOnWholePixels() {
            const image = picture([])
            const lines = []
            for (let y = 15; y < 165; ++y) {
                if (!Qt.colorEqual(image.pixel(100, y), Theme.card))
                    lines.push(y - 20)
            }
            compare(lines, [0, 35, 70, 104, 139])
        }

        function test_twoEqualSamplesLieAtThirtyPercent() {
            const image = picture([50, 50])
            verify(blue(image, 150, 20 + 98), "70 % of 140 from the top")
            verify(!blue(image, 150, 20 + 90))
        }

        function test_theLastValueCarriesADotThatReachesBeyondThePlot() {
            const image = picture([50, 50])
            verify(blue(image, 320 + 2, 118))
        }

        function test_captionsAreFlushWithTheEndsAndSixBelow() {
            compare(chart.implicitHeight, 140 + 6 + 16)
            const start = findChild(chart, "startCaption")
            const end = findChild(chart, "endCaption")
            compare(start.x, 0)
            compare(end.x + end.width, 300)
            compare(start.y, 146)
        }
    }
}
