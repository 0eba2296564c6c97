import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 300
    width: 400

    Column {
        spacing: 10
        x: 20
        y: 20

        PrimaryButton { id: first; text: "Activer" }
        NeutralButton { id: second; text: "Quitter" }
        PrimaryButton { id: off; enabled: false; text: "Activer" }
        SecondaryButton { id: large; large: true; text: "Activer le contrôle" }
        DestructiveButton { id: markup; text: "<b>Fermer</b> & <img src='http://localhost/'>" }
        CloseButton { id: close; text: "Fermer" }
    }

    SignalSpy { id: clicks; signalName: "clicked" }

    TestCase {
        name: "Buttons"
        when: windowShown

        function initTestCase() {
            Theme.reducedMotion = true
        }

        function spy(target: var) {
            clicks.target = target
            clicks.clear()
        }

        function test_isDrawnWithItsFillAndItsLabel() {
            Theme.dark = true
            mouseMove(root, 390, 290)
            const image = grabImage(root)
            const place = first.mapToItem(root, 0, 0)
            verify(Qt.colorEqual(image.pixel(place.x + 6, place.y + 15), Theme.accent))
            compare(first.contentItem.text, "Activer")
            compare(first.contentItem.height, first.height)
            let inked = false
            for (let x = 14; x < first.width - 14; ++x)
                inked = inked || image.red(place.x + x, place.y + 15) < 60
            verify(inked, "the dark label is on the fill")
        }

        function test_sizes() {
            compare(first.height, 30)
            compare(large.height, 34)
            compare(first.width, Math.round(first.width), "whole points")
        }

        function test_mouseAndKeysPress() {
            spy(first)
            mouseClick(first)
            compare(clicks.count, 1)
            first.forceActiveFocus()
            keyClick(Qt.Key_Space)
            compare(clicks.count, 2)
            keyClick(Qt.Key_Return)
            compare(clicks.count, 3)
            keyClick(Qt.Key_Enter)
            compare(clicks.count, 4)
        }

        function test_aDisabledButtonDoesNothing() {
            spy(off)
            mouseClick(off)
            accessibility.act(off, "Press")
            compare(clicks.count, 0)
        }

        function test_theRingShowsOnlyAfterTheKeyboard() {
            const ring = findChild(second, "focusRing")
            mouseClick(root, 390, 290)
            second.forceActiveFocus()
            verify(!ring.visible)
            first.forceActiveFocus()
            keyClick(Qt.Key_Tab)
            verify(second.activeFocus)
            verify(ring.visible)
            compare(ring.width, second.width + 8)
            mousePress(root, 390, 290)
            verify(!ring.visible)
            mouseRelease(root, 390, 290)
        }

        function test_tabPassesDisabledButtons() {
            second.forceActiveFocus()
            keyClick(Qt.Key_Tab)
            verify(large.activeFocus)
        }

        function test_aModifierAloneIsNoKeyboardUse() {
            mouseClick(root, 390, 290)
            keyPress(Qt.Key_Shift)
            keyRelease(Qt.Key_Shift)
            verify(!KeyboardFocus.active)
        }

        function test_assistiveTechnologyReadsAndPresses() {
            spy(first)
            compare(accessibility.name(first), "Activer")
            verify(accessibility.act(first, "Press"))
            compare(clicks.count, 1)
            compare(accessibility.name(close), "Fermer")
        }

        function test_markupIsShownAsItStands() {
            compare(markup.contentItem.textFormat, Text.PlainText)
        }
    }
}
