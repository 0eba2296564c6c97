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

        // The ring's colour at a fraction of its 270 degrees, read from the picture.
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

        // The measured speed of a fan at its minimum varies by about one rpm.
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

        // The colour just outside the ring at a fraction of its 270 degrees.
        function outsideAt(image, share: real): color {
            const angle = (135 + 270 * share) * Math.PI / 180
            return image.pixel(Math.round(84 + 69.75 * Math.cos(angle)), Math.round(84 + 69.75 * Math.sin(angle)))
        }

        // The text colour is translucent, so this compares with its appearance on the card.
        function isTick(color): bool {
            const ink = Qt.tint(Theme.card, Theme.text)
            return Math.abs(color.r - ink.r) + Math.abs(color.g - ink.g) + Math.abs(color.b - ink.b) < 0.02
        }

        function aimed(aim: real): var {
            gauge.x = 20
            gauge.y = 20
            gauge.aim = aim
            return grabImage(root)
        }

        function cleanup() {
            gauge.aim = NaN
            gauge.x = 0
            gauge.y = 0
        }

        function test_theTickStandsOutsideTheRingAtWhatIsAskedFor() {
            gauge.fraction = 0.2
            let image = aimed(0.5)
            verify(isTick(outsideAt(image, 0.5)))
            for (const share of [0, 0.2, 0.45, 0.55, 1])
                verify(Qt.colorEqual(outsideAt(image, share), Theme.card), share)
            image = aimed(0)
            verify(isTick(outsideAt(image, 0)))
            // Values beyond the ring are clamped to its ends.
            for (const beyond of [1, 1.4, Infinity])
                verify(isTick(outsideAt(aimed(beyond), 1)), beyond)
            verify(isTick(outsideAt(aimed(-Infinity), 0)))
        }

        function test_withoutAnAimThereIsNoTick() {
            aimed(0.5)
            const image = aimed(NaN)
            for (let share = 0; share <= 1; share += 0.05)
                verify(Qt.colorEqual(outsideAt(image, share), Theme.card), share)
        }

        function test_theTickMovesToANewAimButAppearsInItsPlace() {
            Theme.reducedMotion = false
            gauge.aim = 0.2
            compare(gauge.shownAim, 0.2)
            tryVerify(() => isTick(outsideAt(aimed(0.2), 0.2)))
            gauge.aim = 0.8
            verify(gauge.shownAim < 0.8)
            tryCompare(gauge, "shownAim", 0.8)
            Theme.reducedMotion = true
            gauge.aim = 0.3
            compare(gauge.shownAim, 0.3)
        }

        function test_theTickIsReadAsWhatItStandsFor() {
            gauge.aimText = "Vitesse demandée : 3 400 tr/min"
            compare(gauge.Accessible.description, "")
            gauge.aim = 0.5
            compare(gauge.Accessible.description, "Vitesse demandée : 3 400 tr/min")
        }

        function test_isReadAsItsTexts() {
            compare(accessibility.name(gauge), "2\u202f694 tr/min")
        }
    }
}
