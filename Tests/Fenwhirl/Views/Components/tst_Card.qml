import QtQuick
import QtTest
import Fenwhirl.Components

Rectangle {
    id: root
    height: 200
    width: 400

    Component {
        id: cardOfOne
        Card {
            width: 300
            Column {
                Item { height: 30; width: 10 }
                Item { height: 10; width: 10 }
            }
        }
    }

    Component {
        id: cardOfTwo
        Card {
            width: 300
            Item { height: 30; width: 10 }
            Item { height: 10; width: 10 }
        }
    }

    TestCase {
        name: "Card"

        function test_its_child_is_as_wide_as_the_room_inside_and_decides_the_height() {
            const card = createTemporaryObject(cardOfOne, root)
            compare(card.content.width, 260)
            compare(card.implicitHeight, 80)
        }

        function test_a_second_child_is_refused_with_the_remedy() {
            ignoreWarning(/put them into a Column/)
            verify(createTemporaryObject(cardOfTwo, root))
        }
    }
}
