import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 100
    width: 200

    property bool state1: false

    Switch {
        id: owned
        on: root.state1
        text: "Prévenir"
        x: 20
        y: 20
        onToggled: on => root.state1 = on
    }

    Switch {
        id: refused
        on: true
        x: 100
        y: 20
    }

    SignalSpy { id: toggles; signalName: "toggled"; target: refused }

    TestCase {
        name: "Switch"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.state1 = false
            toggles.clear()
        }

        function test_clickSpaceAndReturnToggle() {
            compare(owned.width, 38)
            compare(owned.height, 22)
            mouseClick(owned)
            verify(root.state1)
            compare(owned.progress, 1)
            owned.forceActiveFocus()
            keyClick(Qt.Key_Space)
            verify(!root.state1)
            keyClick(Qt.Key_Return)
            verify(root.state1)
        }

        function test_itShowsWhatItsOwnerSaysWhateverWasAskedFor() {
            mouseClick(refused)
            compare(toggles.count, 1)
            compare(toggles.signalArguments[0][0], false)
            verify(refused.on)
            compare(refused.progress, 1)
            mouseClick(refused)
            compare(toggles.signalArguments[1][0], false)
        }

        function test_assistiveTechnologyReadsAndToggles() {
            compare(accessibility.name(owned), "Prévenir")
            verify(!accessibility.checked(owned))
            verify(accessibility.act(owned, "Toggle") || accessibility.act(owned, "Press"))
            verify(root.state1)
            verify(accessibility.checked(owned))
        }
    }
}
