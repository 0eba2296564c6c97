import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 100
    width: 200

    property double celsius: 50

    Stepper {
        id: stepper
        from: 30
        spokenValue: root.celsius + " °C"
        stepSize: 5
        text: "La vitesse augmente à partir de"
        to: 80
        value: root.celsius
        x: 20
        y: 20
        onModified: value => root.celsius = value
    }

    TestCase {
        name: "Stepper"
        when: windowShown

        function init() {
            root.celsius = 50
        }

        function plus() { mouseClick(stepper, 48, 13) }
        function minus() { mouseClick(stepper, 16, 13) }

        function test_halvesStepUpAndDown() {
            compare(stepper.width, 64)
            compare(stepper.height, 26)
            plus()
            compare(root.celsius, 55)
            minus()
            minus()
            compare(root.celsius, 45)
        }

        function test_stopsAtItsBounds() {
            root.celsius = 75
            plus()
            compare(root.celsius, 80)
            plus()
            compare(root.celsius, 80)
            stepper.forceActiveFocus()
            keyClick(Qt.Key_Up)
            compare(root.celsius, 80)
            root.celsius = 30
            minus()
            compare(root.celsius, 30)
        }

        function test_holdingRepeatsAfterAPauseAndReleasingStops() {
            root.celsius = 30
            mousePress(stepper, 48, 13)
            compare(root.celsius, 35)
            // On a busy computer several steps may happen between two checks.
            tryVerify(() => root.celsius >= 50, 10000)
            mouseRelease(stepper, 48, 13)
            const stopped = root.celsius
            wait(250)
            compare(root.celsius, stopped)
        }

        function test_holdingEndsAtTheBound() {
            root.celsius = 70
            mousePress(stepper, 48, 13)
            tryCompare(root, "celsius", 80, 3000)
            wait(200)
            compare(root.celsius, 80)
            mouseRelease(stepper, 48, 13)
        }

        function test_keysStep() {
            stepper.forceActiveFocus()
            keyClick(Qt.Key_Up)
            compare(root.celsius, 55)
            keyClick(Qt.Key_Left)
            compare(root.celsius, 50)
            keyClick(Qt.Key_Plus)
            compare(root.celsius, 55)
            keyClick(Qt.Key_Minus)
            compare(root.celsius, 50)
        }

        function test_assistiveTechnologyReadsAndSetsTheValue() {
            const node = accessibility.find(stepper, Accessible.SpinBox)
            compare(accessibility.value(node), 50)
            compare(accessibility.range(node), [30, 80])
            verify(accessibility.act(node, "Decrease"))
            compare(root.celsius, 45)
            verify(accessibility.setValue(node, 71))
            compare(root.celsius, 70)
        }

        function test_itsValueIsReadWithItsUnitOnce() {
            const node = accessibility.find(stepper, Accessible.SpinBox)
            compare(accessibility.name(node), "La vitesse augmente à partir de")
            compare(accessibility.valueText(node), "50 °C")
            compare(accessibility.description(node), "")
            compare(accessibility.children(node), [])
            root.celsius = 55
            compare(accessibility.valueText(node), "55 °C")
        }
    }
}
