import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 500
    width: 600

    property var selected: []

    SensorRow {
        id: sensor
        fraction: 0.5
        hot: false
        name: "Contrôleur de plateforme"
        peak: 0
        peakHot: false
        range: ""
        temperature: "50 °C"
        width: 400
    }

    TextEdit { id: pasted; visible: false }

    AppRow {
        id: app
        detail: "3 412 Mo"
        fraction: 0.37
        iconSource: ""
        name: "Blender"
        on: true
        protectedText: ""
        shareText: "37 %"
        width: 580
        y: 40
        onToggled: on => root.selected.push(on)
    }

    AppRow {
        id: guarded
        detail: "38 Mo"
        fraction: 0
        iconSource: ""
        name: "Système"
        on: true
        protectedText: "Protégé"
        shareText: "3 %"
        width: 580
        y: 100
    }

    SidebarRow {
        id: row
        selected: true
        symbol: "bell"
        text: "Alertes"
        y: 160
    }

    ChipRow {
        id: chips
        currentIndex: 2
        labels: ["Auto", "Silencieux", "Équilibré", "Jeu", "Max"]
        width: 308
        y: 220
        onActivated: index => root.selected.push(index)
    }

    Card {
        id: card
        width: 200
        y: 300

        Item {
            id: content
            height: 50
        }
    }

    Bar { id: empty; fraction: 0; y: 420 }

    Bar { id: little; fraction: 0.015; y: 440 }

    SignalSpy { id: rowClicks; signalName: "clicked"; target: row }

    TestCase {
        name: "Rows"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.selected = []
        }

        function copyMenuOf(row: Item): CopyMenu {
            for (let i = 0; i < row.children.length; ++i) {
                if (row.children[i] instanceof CopyMenu)
                    return row.children[i]
            }
            return null
        }

        function test_aFocusedSensorsTemperatureIsCopiedByTheKeyForIt() {
            sensor.forceActiveFocus()
            keyClick(Qt.Key_C, Qt.ControlModifier)
            pasted.text = ""
            pasted.paste()
            compare(pasted.text, "Contrôleur de plateforme 50 °C")
        }

        function test_aSensorsTemperatureCanBeCopied() {
            mouseClick(sensor, 30, 9, Qt.RightButton)
            const copy = copyMenuOf(sensor)
            tryVerify(() => copy.menu !== null && copy.menu.opened)
            compare(copy.menu.labels, ["Copy"], "which the application translates")
            sensor.temperature = "51 °C"
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            tryVerify(() => !copy.menu.visible)
            pasted.text = ""
            pasted.paste()
            compare(pasted.text, "Contrôleur de plateforme 51 °C")
            sensor.temperature = "50 °C"
            mouseClick(sensor, 30, 9)
            verify(!copy.menu.visible, "only the other button")
        }

        function test_theSensorsColumnsAndBar() {
            const bar = findChild(sensor, "bar")
            const fill = findChild(bar, "fill")
            compare(bar.x, 156)
            compare(bar.x + bar.width, 400 - 52 - 6)
            compare(bar.height, 6)
            compare(fill.width, bar.width / 2)
            verify(Qt.colorEqual(fill.color, Theme.accent))
            sensor.hot = true
            verify(Qt.colorEqual(fill.color, Theme.hot))
            sensor.fraction = 1.3
            compare(fill.width, bar.width)
            sensor.fraction = NaN
            compare(fill.width, 0)
        }

        function test_aPeakIsMarkedWhereItIsFarEnoughFromTheBarsEnd() {
            const bar = findChild(sensor, "bar")
            const mark = findChild(sensor, "peak")
            sensor.fraction = 0.5
            sensor.peak = 0
            verify(!mark.visible)
            sensor.peak = 0.5 + 5.9 / bar.width
            verify(!mark.visible)
            sensor.peak = 0.5 + 6.1 / bar.width
            verify(mark.visible)
            sensor.peak = 0.7
            compare([mark.width, mark.height], [3, 10])
            fuzzyCompare(mark.x + 1.5, bar.x + 0.7 * bar.width, 0.5)
            compare(mark.y + 5, bar.y + 3)
            sensor.peak = 1
            compare(mark.x + mark.width, bar.x + bar.width)
            sensor.peak = NaN
            verify(!mark.visible)
            sensor.peak = 0.3
            verify(!mark.visible, "below the reading")
            sensor.peak = 0
        }

        function test_aHotPeakHasTheWarningColourWhateverTheBarHas() {
            const mark = findChild(sensor, "peak")
            sensor.fraction = 0.4
            sensor.hot = false
            sensor.peak = 0.85
            sensor.peakHot = true
            verify(Qt.colorEqual(mark.color, Theme.hot))
            sensor.peakHot = false
            verify(Qt.colorEqual(mark.color, Theme.accent))
            sensor.peak = 0
        }

        function test_barAndTemperatureTellTheRangeInATooltip() {
            compare(sensor.Accessible.description, "")
            sensor.range = "55 – 71 °C"
            compare(sensor.Accessible.description, "55 – 71 °C")
            for (const x of [200, 390]) {
                mouseMove(sensor, x, 9)
                tryVerify(() => sensor.tooltip?.visible, 3000)
                compare(sensor.tooltip.text, "55 – 71 °C")
                mouseMove(root, 550, 480)
                tryVerify(() => !sensor.tooltip.visible)
            }
            mouseMove(sensor, 200, 9)
            tryVerify(() => sensor.tooltip.visible, 3000)
            sensor.range = ""
            verify(!sensor.tooltip.visible)
            mouseMove(root, 550, 480)
        }

        function test_scrollingClosesTheTooltipUntilThePointerMoves() {
            sensor.range = "55 – 71 °C"
            mouseMove(sensor, 200, 9)
            tryVerify(() => sensor.tooltip?.opened, 3000)
            OpenTooltip.contentMoved()
            tryVerify(() => !sensor.tooltip.visible)
            mouseMove(sensor, 203, 9)
            tryVerify(() => sensor.tooltip.opened, 3000)
            mouseMove(root, 550, 480)
            sensor.range = ""
        }

        function test_zOnlyOneTooltipIsOpen() {
            const title = findChild(sensor, "name")
            mouseMove(title, 20, 8)
            tryVerify(() => title.tooltip?.opened, 3000)
            sensor.range = "55 – 71 °C"
            const tip = findChild(sensor, "tip")
            tip.wanted = true // as with a handler that was not told that the pointer went
            tryVerify(() => sensor.tooltip?.opened, 3000)
            tryVerify(() => !title.tooltip.visible)
            tip.wanted = false
            mouseMove(root, 550, 480)
            sensor.range = ""
        }

        function test_aNameOfTwoHundredCharactersMovesNothing() {
            const bar = findChild(sensor, "bar")
            const before = [bar.x, bar.width, sensor.implicitHeight]
            const name = sensor.name
            sensor.name = "W".repeat(200)
            compare([bar.x, bar.width, sensor.implicitHeight], before)
            verify(findChild(sensor, "name").truncated)
            sensor.name = name
        }

        function test_aHiddenRowTakesAnotherSensorsTemperatureAtOnce() {
            Theme.reducedMotion = false
            const bar = findChild(sensor, "bar")
            sensor.visible = false // as in a list that reuses its rows
            sensor.fraction = 0.9
            compare(bar.shown, 0.9)
            sensor.visible = true
            compare(bar.shown, 0.9)
            sensor.fraction = 0.5
            verify(bar.shown > 0.5) // on its way
            tryCompare(bar, "shown", 0.5)
            Theme.reducedMotion = true
        }

        function test_aShortBarKeepsTheTracksRounding() {
            const image = grabImage(root)
            verify(Qt.colorEqual(image.pixel(1, 443), Theme.accent))
            verify(Qt.colorEqual(image.pixel(4, 443), Theme.track))
            verify(image.red(0, 440) > 0.9 * image.red(0, 420), "hardly anything in the corner")
        }

        function test_aNameTooLongIsCutAndToldInATooltip() {
            const title = findChild(sensor, "name")
            verify(title.truncated)
            mouseMove(title, 20, 8)
            tryVerify(() => title.tooltip?.visible, 3000)
            const tooltip = title.tooltip
            compare(tooltip.text, "Contrôleur de plateforme")
            mouseMove(root, 550, 480)
            tryVerify(() => !tooltip.visible)
        }

        function test_theApplicationsSwitchAsksAndDoesNotMoveByItself() {
            const toggle = accessibility.find(app, Accessible.CheckBox)
            compare(app.height, 52)
            mouseClick(toggle)
            compare(root.selected, [false])
            verify(toggle.on)
        }

        function test_aProtectedApplicationHasNoSwitch() {
            compare(accessibility.find(guarded, Accessible.CheckBox), null)
        }

        function test_theSidebarRowIsPressedByMouseAndKeys() {
            compare(row.height, 40)
            mouseClick(row)
            row.forceActiveFocus()
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Return)
            compare(rowClicks.count, 3)
            compare(accessibility.name(row), "Alertes")
        }

        function test_chipsFillTheirRowAndAnswer() {
            const nodes = Array.from(chips.children).filter(child => accessibility.role(child) === Accessible.RadioButton)
            compare(nodes.length, 5)
            compare(nodes[0].height, 28)
            fuzzyCompare(nodes[4].x + nodes[4].width, 308, 0.01)
            compare(nodes[4].y, 0, "the five presets fit into the panel")
            mouseClick(nodes[3])
            compare(root.selected, [3])
            verify(accessibility.checked(nodes[2]))
        }

        function test_theCardWrapsItsContent() {
            compare(card.height, 90)
            compare(content.width, 160)
            compare(card.radius, 16)
            content.height = 80
            compare(card.height, 120)
        }
    }
}
