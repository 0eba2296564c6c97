import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 400
    width: 600

    TabularText { id: ones; text: "1\u202f111" }
    TabularText { id: fours; text: "4\u202f444"; y: 20 }
    TabularText { id: unit; size: 22; text: "63 °C"; weight: Font.Bold; y: 40 }
    Label { id: label; text: "<i>Batterie</i>"; y: 80 }
    Label { id: wrapped; text: "Crée un petit fichier texte avec le modèle de ce Mac"; width: 120; wrapMode: Text.Wrap; y: 100 }
    Label { id: measure; text: "La protection à 92"; y: 360 }
    Label { id: broken; text: "La protection à 92 °C"; width: measure.implicitWidth + 2; wrapMode: Text.Wrap; y: 380 }
    Paragraph { id: kept; content: "La protection à 92 °C"; width: broken.width; y: 420 }
    ChangingText { id: changing; content: "Seuil d'alerte : 90 °C"; width: 300; y: 460 }
    PageTitle { id: title; subtitle: "MacBook Pro"; title: "Tableau de bord"; width: 300; y: 200 }
    PageTitle { id: lone; subtitle: ""; title: "Réglages"; width: 300; y: 300 }

    TestCase {
        name: "Texts"
        when: windowShown

        function test_digitsHaveEqualWidths() {
            compare(ones.implicitWidth, fours.implicitWidth)
            verify(ones.implicitWidth > 20)
        }

        function test_aChangedNumberOfTheSameLengthMovesNothing() {
            tryVerify(() => unit.implicitWidth > 0)
            const before = unit.implicitWidth
            unit.text = "11 °C"
            wait(50)
            compare(unit.implicitWidth, before)
            unit.text = "104 °C"
            tryVerify(() => unit.implicitWidth > before)
            compare(accessibility.name(unit), "104 °C")
        }

        function test_linesAreAsHighAsTheScaleSays() {
            compare(label.implicitHeight, 18)
            compare(unit.implicitHeight, 28)
            compare(wrapped.implicitHeight, 18 * wrapped.lineCount)
            verify(wrapped.lineCount >= 2)
        }

        function test_aParagraphKeepsANumberAndItsUnitOnOneLine() {
            compare(broken.lineCount, 2)
            verify(broken.contentWidth > measure.contentWidth - 1) // "…92" ends the first line
            compare(kept.lineCount, 2)
            verify(kept.contentWidth < measure.contentWidth - 10) // "92 °C" begins the second line
            compare(accessibility.name(kept), "La protection à 92 °C")
        }

        function test_aSentenceWithANumberIsOneLineOfEqualDigitsOrSeveralLines() {
            compare(changing.height, 18)
            const before = changing.implicitWidth
            changing.content = "Seuil d'alerte : 11 °C"
            compare(changing.implicitWidth, before)
            compare(accessibility.find(changing, Accessible.StaticText).runs.length, 4, "each digit in a cell of its own")
            changing.width = 110
            compare(changing.height, 36)
            const lines = accessibility.find(changing, Accessible.StaticText)
            compare(accessibility.name(lines), "Seuil d'alerte : 11 °C")
            verify(lines.lineCount === 2)
            changing.width = 300
            compare(changing.height, 18)
        }

        function test_markupIsShownAsItStands() {
            compare(label.textFormat, Text.PlainText)
            verify(label.implicitWidth > 60)
        }

        function test_theSubtitleStandsThreeBelowTheTitleAndTakesNoRoomWhenEmpty() {
            compare(title.height, 32 + 3 + 16)
            compare(lone.height, 32)
            compare(accessibility.name(title), "Tableau de bord")
        }
    }
}
