import QtQuick
import QtTest
import Fenwhirl.Components

Rectangle {
    id: root
    color: "black"
    height: 100
    width: 100

    Symbol { id: symbol; color: "white"; height: 24; name: "plus"; width: 24 }

    TestCase {
        name: "Symbol"
        when: windowShown

        function picture(name: string): var {
            symbol.name = name
            return grabImage(root)
        }

        function test_drawsInItsColor() {
            verify(Qt.colorEqual(picture("plus").pixel(12, 12), "white"))
            symbol.color = "#ff0000"
            verify(Qt.colorEqual(grabImage(root).pixel(12, 12), "#ff0000"))
            symbol.color = "white"
        }

        function test_anUnknownNameDrawsNothingAndWarns() {
            ignoreWarning(/no drawing for the symbol "umbrella"/)
            const image = picture("umbrella")
            for (let i = 0; i < 24; ++i)
                verify(Qt.colorEqual(image.pixel(i, 12), "black"))
        }
    }
}
