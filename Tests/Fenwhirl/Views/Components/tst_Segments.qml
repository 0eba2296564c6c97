import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 200
    width: 400

    property int mode: 0

    ModePicker {
        id: picker
        autoLabel: "Auto"
        constantLabel: "Vitesse fixe"
        currentIndex: root.mode
        sensorLabel: "Selon un capteur"
        text: "Mode"
        width: 349
        x: 20
        y: 20
        onActivated: index => root.mode = index
    }

    SegmentedControl {
        id: tight
        currentIndex: 0
        labels: ["Automático", "Velocidade fixa", "Conforme um sensor"]
        width: 300
        y: 100
    }

    Component {
        id: fresh

        SegmentedControl {
            labels: ["Auto", "Vitesse fixe", "Selon un capteur"]
            width: 349
            y: 150
        }
    }

    SignalSpy { id: choices; signalName: "activated"; target: picker }

    TestCase {
        name: "SegmentedControl"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.mode = 0
            choices.clear()
        }

        function segment(index: int): Item {
            return accessibilityNodes(picker)[index]
        }

        function accessibilityNodes(control: Item): var {
            return Array.from(control.children).filter(child => accessibility.role(child) === Accessible.RadioButton)
        }

        function test_tappingASegmentAsksForIt() {
            compare(picker.height, 34)
            mouseClick(segment(1))
            compare(root.mode, 1)
            mouseClick(segment(2))
            compare(root.mode, 2)
        }

        function test_arrowsMoveTheSelectionAndStopAtTheEnds() {
            picker.forceActiveFocus()
            keyClick(Qt.Key_Right)
            compare(root.mode, 1)
            keyClick(Qt.Key_Right)
            keyClick(Qt.Key_Right)
            compare(root.mode, 2)
            keyClick(Qt.Key_Left)
            compare(root.mode, 1)
            keyClick(Qt.Key_Home)
            compare(root.mode, 0)
            keyClick(Qt.Key_Left)
            compare(root.mode, 0)
            keyClick(Qt.Key_End)
            compare(root.mode, 2)
        }

        function test_segmentsFillTheWidthAndShareTheRestEqually() {
            const nodes = accessibilityNodes(picker)
            compare(nodes.length, 3)
            compare(nodes[0].x, 3)
            fuzzyCompare(nodes[2].x + nodes[2].width, 346, 0.01)
            fuzzyCompare(nodes[0].width - nodes[0].textWidth, nodes[2].width - nodes[2].textWidth, 1) // ±1 point
        }

        function test_selectingMovesNothing() {
            const before = accessibilityNodes(picker).map(node => node.x)
            root.mode = 2
            compare(accessibilityNodes(picker).map(node => node.x), before)
        }

        function test_tightTextsGetSmaller() {
            compare(picker.labelSize, 13)
            tight.width = 400
            compare(tight.labelSize, 13)
            tight.width = 300
            compare(tight.labelSize, 12)
        }

        function test_thePillLiesUnderTheSelection() {
            const pill = findChild(picker, "pill")
            root.mode = 1
            compare(pill.x, segment(1).x)
            compare(pill.width, segment(1).width)
            root.mode = -1
            verify(!pill.visible)
        }

        function test_thePillGlidesFromTheLastSelection() {
            const pill = findChild(picker, "pill")
            Theme.reducedMotion = false
            root.mode = 2
            verify(pill.x < segment(2).x)
            tryCompare(pill, "x", segment(2).x)
        }

        function test_thePillGlidesFromTheVeryFirstSelection_data() {
            return [{ tag: "0 to 2", first: 0, second: 2 }, { tag: "2 to 0", first: 2, second: 0 }]
        }

        function test_thePillGlidesFromTheVeryFirstSelection(data) {
            const control = createTemporaryObject(fresh, root, { currentIndex: data.first })
            const pill = findChild(control, "pill")
            const from = accessibilityNodes(control)[data.first].x
            const to = accessibilityNodes(control)[data.second].x
            waitForRendering(control)
            compare(pill.x, from)
            Theme.reducedMotion = false
            control.currentIndex = data.second
            compare(pill.x, from)
            tryCompare(pill, "x", to)
        }

        function test_thePillStartsUnderTheSelection() {
            Theme.reducedMotion = false
            const control = createTemporaryObject(fresh, root, { currentIndex: 2 })
            compare(findChild(control, "pill").x, accessibilityNodes(control)[2].x)
        }

        function test_theSelectedSegmentIsNotChosenAgain() {
            mouseClick(segment(0))
            picker.forceActiveFocus()
            keyClick(Qt.Key_Home)
            verify(accessibility.act(segment(0), "Press"))
            compare(choices.count, 0)
        }

        function test_assistiveTechnologyReadsAndPresses() {
            compare(accessibility.name(segment(1)), "Vitesse fixe")
            verify(accessibility.checked(segment(0)))
            verify(!accessibility.checked(segment(1)))
            verify(accessibility.act(segment(1), "Press"))
            compare(root.mode, 1)
            verify(accessibility.checked(segment(1)))
            verify(accessibility.act(segment(2), "Toggle"))
            compare(root.mode, 2)
        }

        function test_theFocusIsOnTheSelectedSegment() {
            picker.forceActiveFocus()
            verify(segment(0).activeFocus)
            keyClick(Qt.Key_Right)
            verify(segment(1).activeFocus)
            root.mode = 2
            verify(segment(2).activeFocus, "also when something else selects another")
        }
    }
}
