import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 600
    width: 500

    property int sensor: 0
    property int preset: -1
    property int far: 30
    property var many: Array.from({ length: 40 }, (_, index) => "Capteur " + index)

    PopupButton {
        id: button
        currentIndex: root.sensor
        labels: ["Température principale", "Batterie", "Air", "Cœur"]
        text: "Capteur"
        x: 40
        y: 200
        onActivated: index => root.sensor = index
    }

    PopupButton {
        id: lengthy
        currentIndex: root.far
        labels: root.many
        x: 40
        y: 400
    }

    DropDownMenu {
        id: presets
        caption: "Préréglage"
        currentIndex: root.preset
        currentText: root.preset < 0 ? "Personnalisé" : labels[root.preset]
        labels: ["Auto", "Silencieux", "Équilibré", "Jeu", "Max"]
        x: 40
        y: 40
        onActivated: index => root.preset = index
    }

    TestCase {
        name: "Menus"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.sensor = 0
            root.preset = -1
        }

        function cleanup() {
            for (const control of [button, lengthy, presets]) {
                if (!control.menu)
                    continue // the menu was never opened
                control.menu.close()
                tryCompare(control.menu, "visible", false)
            }
        }

        function open(control: var) {
            mouseClick(control)
            verify(control.menu, "its menu is made when it is needed")
            tryCompare(control.menu, "opened", true)
        }

        function test_choosingWithTheMouse() {
            open(button)
            const item = button.menu.list.itemAtIndex(2)
            mouseClick(item)
            compare(root.sensor, 2)
            compare(button.currentLabel, "Air")
            tryCompare(button.menu, "visible", false)
        }

        function test_theCurrentItemLiesOverTheButton() {
            root.sensor = 2
            open(button)
            const item = button.menu.list.itemAtIndex(2)
            compare(item.mapToItem(root, 0, 0).y, button.y)
        }

        function test_theDropDownOpensBelow() {
            open(presets)
            verify(presets.menu.list.mapToItem(root, 0, 0).y > presets.y + presets.height)
        }

        function test_keyboardOpensMovesAndChooses() {
            button.forceActiveFocus()
            keyClick(Qt.Key_Down)
            tryCompare(button.menu, "opened", true)
            compare(button.menu.list.currentIndex, 0)
            verify(!findChild(button.menu.list.itemAtIndex(0), "focusRing").visible, "its colour says it")
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Up)
            compare(button.menu.list.currentIndex, 1)
            keyClick(Qt.Key_Return)
            compare(root.sensor, 1)
            tryCompare(button.menu, "visible", false)
            tryCompare(button, "activeFocus", true)
        }

        function test_lettersJumpAndHomeAndEndGoToTheEnds() {
            button.forceActiveFocus()
            keyClick(Qt.Key_Space)
            tryCompare(button.menu, "opened", true)
            keyClick("b")
            compare(button.menu.list.currentIndex, 1)
            keyClick(Qt.Key_End)
            compare(button.menu.list.currentIndex, 3)
            keyClick(Qt.Key_Home)
            compare(button.menu.list.currentIndex, 0)
        }

        function test_escapeClosesWithoutChoosing() {
            open(button)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Escape)
            tryCompare(button.menu, "visible", false)
            compare(root.sensor, 0)
        }

        function test_aPressOutsideClosesWithoutChoosing() {
            open(button)
            mouseClick(root, 490, 590)
            tryCompare(button.menu, "visible", false)
            compare(root.sensor, 0)
        }

        function test_withoutAMatchNothingIsShownAndNothingIsChecked() {
            root.sensor = -1
            compare(button.currentLabel, "")
            open(button)
            for (let i = 0; i < 4; ++i)
                verify(!button.menu.list.itemAtIndex(i).checked)
            compare(presets.currentText, "Personnalisé")
        }

        function test_aLongMenuShowsPartOfItsLastItem() {
            open(lengthy)
            compare(lengthy.menu.height, 11.5 * 28 + 10)
            const list = lengthy.menu.list
            const item = list.itemAtIndex(30)
            verify(item !== null)
            verify(item.checked)
            compare(item.mapToItem(list, 0, 0).y, 10 * 28, "the checked one whole")
            compare(list.itemAtIndex(31).mapToItem(list, 0, 0).y, list.height - 14, "half of the next")
            compare(item.mapToItem(root, 0, 0).y, lengthy.y, "over the button")
            verify(list.mapToItem(root, 0, 0).y >= 0, "inside the window")
        }

        function test_aLongMenuAtItsEndCutsItsFirstItem() {
            root.far = 39
            open(lengthy)
            const list = lengthy.menu.list
            const item = list.itemAtIndex(39)
            compare(item.mapToItem(list, 0, 0).y, list.height - 28)
            compare(item.mapToItem(root, 0, 0).y, lengthy.y, "over the button")
            root.far = 30
        }

        function test_twelveItemsAreShownWhole() {
            root.many = root.many.slice(0, 12)
            root.far = 11
            open(lengthy)
            compare(lengthy.menu.height, 12 * 28 + 10)
            lengthy.menu.close()
            tryCompare(lengthy.menu, "visible", false)
            root.far = 30
            root.many = Array.from({ length: 40 }, (_, index) => "Capteur " + index)
        }

        function test_theBarOfALongMenuShowsItselfForAMomentOnOpening() {
            open(lengthy)
            const thumb = findChild(lengthy.menu.list, "thumb")
            verify(thumb.visible)
            lengthy.menu.close()
            tryCompare(lengthy.menu, "visible", false)
            tryCompare(thumb, "opacity", 0, 3000)
            // The second time the items are in their places, so only the opening can show the bar. It does so at once, and
            // a busy computer might hide it again before the menu has opened.
            mouseClick(lengthy)
            compare(thumb.opacity, 1)
            tryCompare(thumb, "opacity", 0, 3000)
            verify(thumb.visible)
        }

        function test_aPointerThatRestsDoesNotTakeTheHighlightFromTheKeys() {
            open(lengthy)
            mouseMove(lengthy.menu.list, 50, 99)
            compare(lengthy.menu.list.currentIndex, -1, "it may have rested there")
            mouseMove(lengthy.menu.list, 50, 100)
            const pointed = lengthy.menu.list.currentIndex
            compare(pointed, 20 + 3)
            for (let i = 0; i < 12; ++i)
                keyClick(Qt.Key_Down)
            compare(lengthy.menu.list.currentIndex, pointed + 12)
            wait(0)
            compare(lengthy.menu.list.currentIndex, pointed + 12)
            const at = lengthy.menu.list.contentY
            mouseMove(lengthy.menu.list, 50, lengthy.menu.list.height - 3)
            compare(lengthy.menu.list.contentY, at, "the cut item stays cut")
            mouseMove(lengthy.menu.list, 50, 101)
            compare(lengthy.menu.list.currentIndex, lengthy.menu.list.indexAt(50, lengthy.menu.list.contentY + 101))
        }

        function test_aPointerThatRestsWhereAMenuOpensDoesNotTakeTheHighlight() {
            root.sensor = 1
            const over = button.mapToItem(root, 20, 14)
            mouseMove(root, over.x, over.y + 28 * 2)
            button.forceActiveFocus()
            keyClick(Qt.Key_Space)
            tryCompare(button.menu, "opened", true)
            mouseMove(root, over.x, over.y + 28 * 2) // tells the menu where the pointer is
            compare(button.menu.list.currentIndex, 1)
            keyClick(Qt.Key_Return)
            compare(root.sensor, 1)
        }

        function test_typingFinds() {
            lengthy.forceActiveFocus()
            keyClick(Qt.Key_Return)
            tryCompare(lengthy.menu, "opened", true)
            for (const letter of ["c", "a", "p", "t", "e", "u", "r", " ", "1", "7"])
                keyClick(letter)
            compare(lengthy.menu.list.currentIndex, 17)
            verify(lengthy.menu.visible, "a blank is a letter while one types")
            const y = 17 * 28 - lengthy.menu.list.contentY
            verify(y >= 0 && y + 28 <= lengthy.menu.list.height, y)
        }

        function test_assistiveTechnologyReadsAndOpens() {
            compare(accessibility.name(button), "Capteur")
            compare(accessibility.role(button), Accessible.ComboBox)
            compare(accessibility.valueText(button), button.currentLabel)
            verify(button.currentLabel !== "")
            compare(accessibility.description(button), "", "the choice is the value, and is not read again")
            verify(accessibility.act(button, "Press"))
            tryCompare(button.menu, "opened", true)
            const item = button.menu.list.itemAtIndex(1)
            compare(accessibility.name(item), "Batterie")
            verify(accessibility.act(item, "Press"))
            compare(root.sensor, 1)
        }
    }
}
