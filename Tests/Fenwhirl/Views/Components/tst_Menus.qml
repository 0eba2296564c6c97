import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 600
    width: 500

    property int sensor: 0
    property int preset: -1
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
        currentIndex: 30
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
                    continue // never opened
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

        function test_aLongMenuIsTwelveItemsHighAndShowsTheCurrentOne() {
            open(lengthy)
            compare(lengthy.menu.height, 12 * 28 + 10)
            const item = lengthy.menu.list.itemAtIndex(30)
            verify(item !== null)
            verify(item.checked)
            const y = item.mapToItem(lengthy.menu.list, 0, 0).y
            verify(y >= 0 && y + item.height <= lengthy.menu.list.height)
            verify(lengthy.menu.list.mapToItem(root, 0, 0).y >= 0, "inside the window")
        }

        function test_assistiveTechnologyReadsAndOpens() {
            compare(accessibility.name(button), "Capteur")
            compare(accessibility.role(button), Accessible.ComboBox)
            verify(accessibility.act(button, "Press"))
            tryCompare(button.menu, "opened", true)
            const item = button.menu.list.itemAtIndex(1)
            compare(accessibility.name(item), "Batterie")
            verify(accessibility.act(item, "Press"))
            compare(root.sensor, 1)
        }
    }
}
