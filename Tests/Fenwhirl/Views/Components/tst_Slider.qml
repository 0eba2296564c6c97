import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 100
    width: 300

    property double speed: 2000

    Slider {
        id: slider
        from: 1200
        spokenValue: root.speed + " tr/min"
        stepSize: 50
        text: "Vitesse demandée"
        to: 5777
        value: root.speed
        width: 218
        x: 20
        y: 20
        onMoved: value => root.speed = value
    }

    Slider {
        id: narrow
        from: 1200
        stepSize: 50
        to: 1201
        value: 1200
        width: 218
        x: 20
        y: 60
    }

    SignalSpy { id: moves; signalName: "moved"; target: narrow }
    SignalSpy { id: requests; signalName: "moved"; target: slider }

    TestCase {
        name: "Slider"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.speed = 2000
            moves.clear()
            requests.clear()
        }

        function test_arrowsMoveOneStepAndPageKeysTen() {
            slider.forceActiveFocus()
            keyClick(Qt.Key_Right)
            compare(root.speed, 2050)
            keyClick(Qt.Key_Up)
            compare(root.speed, 2100)
            keyClick(Qt.Key_Left)
            compare(root.speed, 2050)
            keyClick(Qt.Key_Down)
            compare(root.speed, 2000)
            keyClick(Qt.Key_PageUp)
            compare(root.speed, 2500)
            keyClick(Qt.Key_PageDown)
            compare(root.speed, 2000)
        }

        function test_homeAndEndGoToTheEnds() {
            slider.forceActiveFocus()
            keyClick(Qt.Key_End)
            compare(root.speed, 5777)
            keyClick(Qt.Key_Right)
            compare(root.speed, 5777)
            keyClick(Qt.Key_Home)
            compare(root.speed, 1200)
            keyClick(Qt.Key_Left)
            compare(root.speed, 1200)
            compare(requests.count, 2, "nothing is asked for at the ends")
        }

        function test_aPressOnTheTrackJumpsThere() {
            mousePress(slider, 9 + 100, 10)
            compare(root.speed, 3500, "the middle of 1200 to 5777 on the grid of 50")
            verify(slider.activeFocus)
            mouseMove(slider, 400, 10)
            compare(root.speed, 5777)
            mouseMove(slider, -50, 10)
            compare(root.speed, 1200)
            mouseRelease(slider, -50, 10)
        }

        function test_thePointerAsksForRoundNumbersAndForTheEndsWhereverTheRangeBegins() {
            slider.from = 2160
            mousePress(slider, 9 + 100, 10)
            compare(root.speed, 3950)
            mouseMove(slider, 9 + 20, 10)
            compare(root.speed, 2500)
            mouseMove(slider, -50, 10)
            compare(root.speed, 2160)
            mouseMove(slider, 400, 10)
            compare(root.speed, 5777)
            mouseRelease(slider, 400, 10)
            slider.from = 1200
        }

        function test_aPressOnTheKnobMovesNothing() {
            const knob = 9 + 200 * (2000 - 1200) / (5777 - 1200)
            mousePress(slider, knob + 5, 10)
            compare(root.speed, 2000)
            mouseMove(slider, knob + 5 + 100, 10)
            fuzzyCompare(root.speed, 2000 + 4577 / 2, 30)
            mouseRelease(slider, knob + 105, 10)
        }

        function test_aMeasuredValueIsTheSameForAssistiveTechnologyAsLongAsItHasTheFocus() {
            const node = accessibility.find(slider, Accessible.Slider)
            slider.measured = true
            slider.forceActiveFocus()
            root.speed = 2100
            compare(accessibility.value(node), 2000)
            compare(accessibility.valueText(node), "2000 tr/min")
            compare(slider.position, (2100 - 1200) / (5777 - 1200)) // the knob moves
            keyClick(Qt.Key_Right)
            compare(root.speed, 2150)
            narrow.forceActiveFocus()
            compare(accessibility.value(node), 2150)
            root.speed = 2200
            compare(accessibility.value(node), 2200)
            compare(accessibility.valueText(node), "2200 tr/min")
            slider.measured = false
            slider.forceActiveFocus()
            root.speed = 2300
            compare(accessibility.value(node), 2300)
        }

        function test_aFanWithEqualLimitsKeepsAUsableSlider() {
            narrow.forceActiveFocus()
            keyClick(Qt.Key_Right)
            compare(moves.count, 1)
            compare(moves.signalArguments[0][0], 1201)
            compare(narrow.value, 1200, "its owner did not follow")
        }

        function test_aValueOutsideTheRangeStandsAtTheEnd() {
            root.speed = 900
            compare(slider.position, 0)
            root.speed = 9000
            compare(slider.position, 1)
            root.speed = NaN
            compare(slider.position, 0)
        }

        function test_aBubbleShowsTheValueWhileTheKnobIsHeldAndForAWhileAfterAKey() {
            slider.unit = "tr/min"
            slider.valueText = Qt.binding(() => root.speed.toString())
            const knob = 9 + 200 * (2000 - 1200) / (5777 - 1200)
            verify(!slider.bubble.visible)
            mousePress(slider, knob, 10)
            verify(slider.bubble.visible)
            compare(slider.bubble.reading, "2000")
            compare(slider.bubble.width, 92)
            fuzzyCompare(slider.bubble.x + slider.bubble.width / 2, knob, 1)
            compare(slider.bubble.y + slider.bubble.height, 1 - 4, "4 above the knob's box")
            mouseMove(slider, 400, 10)
            compare(slider.bubble.reading, "5777")
            compare(slider.bubble.x + slider.bubble.width, slider.width + 8, "not farther than 8 beyond the end")
            mouseMove(slider, -50, 10)
            compare(slider.bubble.x, -8)
            mouseRelease(slider, -50, 10)
            verify(!slider.bubble.visible)
            keyClick(Qt.Key_Right)
            verify(slider.bubble.visible)
            compare(slider.bubble.reading, "1250")
            tryVerify(() => !slider.bubble.visible, 2000)
            slider.valueText = ""
            keyClick(Qt.Key_Right)
            verify(!slider.bubble.visible, "nothing to show")
        }

        function test_assistiveTechnologyReadsAndSetsTheValue() {
            const node = accessibility.find(slider, Accessible.Slider)
            verify(node !== null)
            compare(accessibility.name(node), "Vitesse demandée")
            compare(accessibility.value(node), 2000)
            compare(accessibility.range(node), [1200, 5777])
            verify(accessibility.act(node, "Increase"))
            compare(root.speed, 2050)
            verify(accessibility.setValue(node, 3010))
            compare(root.speed, 3000)
            compare(accessibility.value(node), 3000)
            root.speed = 4000
            compare(accessibility.value(node), 4000)
        }

        // Where the text of the value cannot be heard, the unit follows in the description, which must not repeat it.
        function test_itsUnitIsHeardOnce() {
            const node = accessibility.find(slider, Accessible.Slider)
            compare(accessibility.valueText(node), "2000 tr/min")
            compare(accessibility.description(node), node.sliderTextHeard ? "" : "tr/min")
            slider.detail = "1 990 tr/min"
            compare(accessibility.description(node), "1 990 tr/min")
            slider.detail = ""
        }
    }
}
