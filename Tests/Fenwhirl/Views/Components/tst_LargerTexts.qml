import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 600
    width: 600

    Label { id: label; text: "Batterie" }
    TabularText { id: number; text: "63 °C"; y: 40 }
    NeutralButton { id: button; text: "Tester l'alerte"; y: 80 }
    NeutralButton { id: narrow; text: "Remettre les ventilateurs en automatique"; width: 300; y: 140 }
    PopupButton { id: picker; currentIndex: 0; labels: ["Deutsch"]; text: "Langue"; y: 240 }
    SegmentedControl {
        id: modes
        currentIndex: 2
        labels: ["Auto", "Vitesse fixe", "Selon un capteur"]
        width: 343
        y: 300
    }
    SensorRow { id: sensor; fraction: 0.5; hot: false; peak: 0; peakHot: false; range: ""; name: "Batterie"; temperature: "63 °C"; width: 500; y: 480 }
    RingGauge { id: gauge; caption: "tr/min"; fraction: 0.5; valueText: "5999" }

    SignalSpy { id: chosen; signalName: "activated"; target: modes }

    TestCase {
        name: "LargerTexts"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
        }

        function cleanup() {
            Theme.textScale = 1
        }

        function test_theDesignedSizesAreThoseAtOne() {
            compare(label.font.pixelSize, 13)
            compare(button.implicitHeight, 30)
            compare(narrow.implicitHeight, 30)
            compare(picker.implicitHeight, 28)
            compare(modes.implicitHeight, 34)
            compare(sensor.implicitHeight, 18)
            compare(gauge.implicitWidth, 128)
        }

        function test_textsAndTheirLinesGrow() {
            const before = number.implicitWidth
            Theme.textScale = 1.5
            compare(label.font.pixelSize, 20)
            compare(label.implicitHeight, 27)
            compare(number.implicitHeight, 27)
            tryVerify(() => number.implicitWidth > 1.4 * before)
        }

        function test_controlsGrowByWhatTheirLineDoes() {
            Theme.textScale = 1.5
            compare(button.implicitHeight, 39)
            compare(picker.implicitHeight, 37)
            compare(sensor.implicitHeight, 27)
            compare(gauge.implicitWidth, 192)
            compare(findChild(sensor, "name").width, 225)
        }

        function test_aButtonThatIsTooNarrowHasMoreLines() {
            Theme.textScale = 2
            compare(narrow.implicitHeight, 48 + 2 * 36)
            compare(narrow.contentItem.lineCount, 3)
            verify(!narrow.contentItem.truncated)
        }

        function test_choicesWithoutRoomStandBelowEachOther() {
            Theme.textScale = 2
            compare(modes.implicitHeight, 3 * 46 + 6)
            compare(findChild(modes, "pill").y, 3 + 2 * 46)
            compare(findChild(modes, "pill").height, 46)
            mouseClick(modes, 100, 3 + 46 + 20)
            compare(chosen.count, 1)
            compare(chosen.signalArguments[0][0], 1)
        }
    }
}
