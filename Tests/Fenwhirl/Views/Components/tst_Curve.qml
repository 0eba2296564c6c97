import QtQuick
import QtTest
import Fenwhirl.Components

Rectangle {
    id: root
    color: Theme.card
    height: 200
    width: 440

    property double start: 50
    property double max: 90
    property int presses: 0

    MouseArea {
        anchors.fill: parent
        onPressed: root.presses += 1
    }

    CurveEditor {
        id: curve
        extent: "1 200 – 5 777 tr/min"
        highestText: "5 777"
        limited: true
        lowestText: "1 200"
        maxTemp: root.max
        maxText: "Vitesse maximale à " + root.max + " °C"
        startTemp: root.start
        startText: "La vitesse augmente à partir de " + root.start + " °C"
        text: "Selon un capteur"
        width: 384
        x: 30
        y: 40
        onMaxModified: value => root.max = value
        onStartModified: value => root.start = value
    }

    SignalSpy { id: starts; signalName: "startModified"; target: curve }

    TestCase {
        name: "CurveEditor"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            Theme.textScale = 1
            Theme.dark = true
            curve.alertAt = NaN
            curve.enabled = true
            curve.limited = true
            curve.now = NaN
            curve.protecting = false
            root.start = 50
            root.max = 90
            root.presses = 0
            starts.clear()
            mouseMove(root, 2, 2)
            tryVerify(() => bubbleValue() === "", 2000) // left over from a key press in the previous test
        }

        // A degree takes four points. The plot begins at x = 44 and is 88 points high, 8 points from the top.
        function xOf(celsius: real): real {
            return 44 + (celsius - 20) * 4
        }

        function sliders(): var {
            const found = []
            for (let i = 0; i < curve.children.length; ++i) {
                const node = accessibility.find(curve.children[i], Accessible.Slider)
                if (node)
                    found.push(node)
            }
            return found
        }

        function bubbleValue(): string {
            for (let i = 0; i < curve.children.length; ++i) {
                const child = curve.children[i]
                if (child instanceof ValueBubble && child.visible)
                    return child.reading
            }
            return ""
        }

        function inkAt(celsius: real, share: real): color {
            return grabImage(root).pixel(Math.round(30 + xOf(celsius)), Math.round(48 + 88 * (1 - share)))
        }

        // Compares with a tolerance, because edges are antialiased.
        function isSeparator(color): bool {
            const ink = Theme.accent
            return Math.abs(color.r - ink.r) + Math.abs(color.g - ink.g) + Math.abs(color.b - ink.b) < 0.3
        }

        function test_theHandlesStandAtTheirTemperaturesAndAreDraggedInStepsOfFive() {
            mousePress(curve, xOf(50), 96)
            compare(root.start, 50, "the press itself moves nothing")
            compare(bubbleValue(), "50")
            mouseMove(curve, xOf(52), 96)
            compare(root.start, 50)
            mouseMove(curve, xOf(53), 20)
            compare(root.start, 55)
            compare(bubbleValue(), "55")
            mouseMove(curve, xOf(200), 96)
            compare(root.start, 80)
            mouseMove(curve, xOf(-90), 96)
            compare(root.start, 30)
            mouseRelease(curve, xOf(-90), 96)
            compare(bubbleValue(), "")
            compare(root.max, 90)
            mousePress(curve, xOf(90), 8)
            mouseMove(curve, xOf(0), 8)
            compare(root.max, 50)
            mouseMove(curve, xOf(140), 8)
            compare(root.max, 100)
            mouseRelease(curve, xOf(140), 8)
            compare(bubbleValue(), "")
        }

        function test_theHandleIsHeldWhereItWasTaken() {
            mousePress(curve, xOf(50) + 14, 96)
            mouseMove(curve, xOf(60) + 14, 96)
            compare(root.start, 60)
            mouseRelease(curve, xOf(60) + 14, 96)
        }

        function test_aPressBesideTheHandlesChangesNothing() {
            for (const at of [[xOf(70), 50], [xOf(50), 96 - 18], [xOf(50) + 18, 96], [xOf(90), 8 + 18], [10, 50]]) {
                mousePress(curve, at[0], at[1])
                mouseMove(curve, at[0] + 60, at[1])
                mouseRelease(curve, at[0] + 60, at[1])
            }
            compare(root.start, 50)
            compare(root.max, 90)
            compare(root.presses, 5, "what lies below got them")
        }

        function test_eachStepIsAskedForOnce() {
            mousePress(curve, xOf(50), 96)
            for (let celsius = 50; celsius <= 60; ++celsius)
                mouseMove(curve, xOf(celsius), 96)
            mouseRelease(curve, xOf(60), 96)
            compare(starts.count, 2)
        }

        function test_escapeBringsBackTheValueFromBeforeTheDrag() {
            mousePress(curve, xOf(50), 96)
            mouseMove(curve, xOf(70), 96)
            compare(root.start, 70)
            keyClick(Qt.Key_Escape)
            compare(root.start, 50)
            mouseMove(curve, xOf(65), 96)
            compare(root.start, 50, "the drag is over")
            mouseRelease(curve, xOf(65), 96)
            compare(root.start, 50)
        }

        function test_whereTheHandlesMeetTheOneDraggedLastIsTaken() {
            curve.height = curve.implicitHeight
            root.start = 80
            root.max = 80
            // The handles are in the same column, but no press reaches both: the nearer one is taken.
            mousePress(curve, xOf(80), 90)
            mouseMove(curve, xOf(60), 90)
            mouseRelease(curve, xOf(60), 90)
            compare(root.start, 60)
            compare(root.max, 80)
        }

        function test_keysMoveAHandleAndItsValueShowsForAWhile() {
            sliders()[0].forceActiveFocus()
            keyClick(Qt.Key_Right)
            compare(root.start, 55)
            compare(bubbleValue(), "55")
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Left)
            compare(root.start, 45)
            keyClick(Qt.Key_PageUp)
            compare(root.start, 55)
            keyClick(Qt.Key_Home)
            compare(root.start, 30)
            keyClick(Qt.Key_PageDown)
            compare(root.start, 30)
            keyClick(Qt.Key_End)
            compare(root.start, 80)
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_End)
            compare(root.max, 100)
            compare(root.start, 80)
            tryVerify(() => bubbleValue() === "", 2000)
        }

        function test_isReadAsTwoSlidersAndADrawing() {
            compare(accessibility.role(curve), Accessible.Chart)
            compare(accessibility.name(curve), "Selon un capteur")
            compare(curve.Accessible.description, "1 200 – 5 777 tr/min")
            const nodes = sliders()
            compare(nodes.length, 2)
            compare(nodes.map(node => accessibility.name(node)), ["La vitesse augmente à partir de", "Vitesse maximale à"])
            compare(nodes.map(node => accessibility.valueText(node)), ["50 °C", "90 °C"])
            compare(nodes.map(node => accessibility.value(node)), [50, 90])
            compare(nodes.map(node => accessibility.range(node)), [[30, 80], [50, 100]])
            verify(accessibility.setValue(nodes[0], 63))
            compare(root.start, 65)
            verify(accessibility.act(nodes[1], "Decrease"))
            compare(root.max, 85)
        }

        function test_theLineRunsThroughItsPoints() {
            for (const point of [[35, 0], [70, 0.5], [80, 0.75]])
                verify(isSeparator(inkAt(point[0], point[1])), point)
            verify(!isSeparator(inkAt(70, 0.7)))
            root.max = 70
            verify(isSeparator(inkAt(85, 1)))
        }

        function test_theAlertThresholdLiftsTheLineAndColoursWhatLiesBehind() {
            root.start = 65
            root.max = 100
            const plain = inkAt(88, 0.3)
            verify(!isSeparator(inkAt(88, 1)))
            curve.alertAt = 85
            verify(isSeparator(inkAt(88, 1)))
            verify(!Qt.colorEqual(inkAt(88, 0.3), plain))
            curve.limited = false
            verify(!isSeparator(inkAt(88, 1)), "another sensor knows no threshold")
        }

        function test_thePresentTemperatureMovesOnTheLine() {
            curve.now = 35
            // A ring in the plot's colour separates the dot from the line.
            verify(isSeparator(inkAt(35, 3 / 88)))
            verify(Qt.colorEqual(inkAt(36, 0), Theme.well))
            curve.now = 80
            verify(isSeparator(inkAt(36, 0)))
            curve.protecting = true
            verify(isSeparator(inkAt(80, 1 - 3 / 88)))
        }

        function test_nonFiniteValuesAreHandled() {
            for (const value of [NaN, Infinity, -Infinity]) {
                root.start = value
                root.max = value
                curve.now = value
                curve.alertAt = value
                grabImage(root)
            }
            sliders()[0].forceActiveFocus()
            keyClick(Qt.Key_Right)
            verify(root.start >= 30 && root.start <= 80, root.start)
        }

        function test_lockedItDoesNothing() {
            curve.enabled = false
            mousePress(curve, xOf(50), 96)
            mouseMove(curve, xOf(70), 96)
            mouseRelease(curve, xOf(70), 96)
            compare(root.start, 50)
        }

        function test_movesToANewValueAndWithReducedMotionAtOnce() {
            root.start = 60
            compare(curve.shownStart, 60)
            Theme.reducedMotion = false
            root.start = 40
            verify(curve.shownStart > 40)
            tryCompare(curve, "shownStart", 40)
        }
    }
}
