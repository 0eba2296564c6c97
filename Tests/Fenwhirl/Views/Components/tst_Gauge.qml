import QtQuick
import QtTest
import Fenwhirl.Components

Rectangle {
    id: root
    color: Theme.card
    height: 200
    width: 200

    RingGauge {
        id: gauge
        caption: "tr/min"
        fraction: 0
        valueText: "2\u202f694"
    }

    TestCase {
        name: "RingGauge"
        when: windowShown

        function initTestCase() {
            Theme.reducedMotion = true
            Theme.dark = true
        }

        // The ring's colour at a share of its 270 degrees, read from the picture.
        function ringAt(image, share: real): color {
            const angle = (135 + 270 * share) * Math.PI / 180
            return image.pixel(Math.round(64 + 58 * Math.cos(angle)), Math.round(64 + 58 * Math.sin(angle)))
        }

        function picture(fraction: real): var {
            gauge.fraction = fraction
            return grabImage(root)
        }

        function test_aNegativeFractionIsAnEmptyArc() {
            const image = picture(-0.5)
            for (const share of [0.01, 0.3, 0.99])
                verify(Qt.colorEqual(ringAt(image, share), Theme.track), share)
        }

        function test_aFractionAboveOneIsAFullArc() {
            const image = picture(1.7)
            for (const share of [0.01, 0.5, 0.99])
                verify(Qt.colorEqual(ringAt(image, share), Theme.accent), share)
        }

        function test_noNumberIsAnEmptyArc() {
            const image = picture(NaN)
            verify(Qt.colorEqual(ringAt(image, 0.01), Theme.track))
        }

        // A fan at its minimum is measured a turn above it and below it.
        function test_belowHalfAPercentNothingIsDrawn() {
            for (const fraction of [0.0002, 0.004]) {
                verify(Qt.colorEqual(ringAt(picture(fraction), 0.001), Theme.track), fraction)
                verify(Qt.colorEqual(ringAt(picture(fraction), -0.01), Theme.track), fraction)
            }
            verify(Qt.colorEqual(ringAt(picture(0.006), 0.001), Theme.accent))
        }

        function test_aThirdFillsAThirdFromTheLowerLeft() {
            const image = picture(0.33)
            verify(Qt.colorEqual(ringAt(image, 0.01), Theme.accent))
            verify(Qt.colorEqual(ringAt(image, 0.30), Theme.accent))
            verify(Qt.colorEqual(ringAt(image, 0.40), Theme.track))
        }

        function test_theQuarterAtTheBottomIsOpen() {
            const image = picture(1)
            verify(Qt.colorEqual(image.pixel(64, 122), Theme.card))
        }

        function test_aChangeOfThemeRepaints() {
            picture(1)
            Theme.dark = false
            verify(Qt.colorEqual(ringAt(grabImage(root), 0.5), "#0A84C6"))
            Theme.dark = true
        }

        function test_aSmallChangeShowsAtOnceAndALargeOneMoves() {
            Theme.reducedMotion = false
            gauge.fraction = 0.5
            tryCompare(gauge, "shown", 0.5)
            gauge.fraction = 0.502
            compare(gauge.shown, 0.502)
            gauge.fraction = 0.9
            verify(gauge.shown < 0.9)
            tryCompare(gauge, "shown", 0.9)
            Theme.reducedMotion = true
        }

        function test_isReadAsItsTexts() {
            compare(accessibility.name(gauge), "2\u202f694 tr/min")
        }
    }
}
