import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 300
    width: 300

    ScrollView {
        id: view
        anchors.fill: parent

        Column {
            id: content
            spacing: 400

            NeutralButton { id: top; text: "haut" }
            NeutralButton { id: middle; text: "milieu" }
            NeutralButton { id: bottom; text: "bas" }
        }
    }

    SignalSpy {
        id: pressed
        signalName: "clicked"
        target: top
    }

    TestCase {
        name: "ScrollView"
        when: windowShown

        function init() {
            view.contentY = 0
        }

        function cleanup() {
            Theme.reducedMotion = false
        }

        function test_theContentGetsTheWidthInsideThePadding() {
            compare(content.width, 264)
            compare(view.contentHeight, content.height + 36)
        }

        function test_theWheelScrollsAndStopsAtTheEnds() {
            mouseWheel(view, 150, 150, 0, -120)
            verify(view.contentY > 20)
            for (let i = 0; i < 40; ++i)
                mouseWheel(view, 150, 150, 0, -120)
            compare(view.contentY, view.contentHeight - view.height)
            for (let i = 0; i < 40; ++i)
                mouseWheel(view, 150, 150, 0, 120)
            compare(view.contentY, 0)
        }

        function test_aFingerMovesThePageAndTheMouseDoesNot() {
            const touch = touchEvent(view)
            touch.press(0, view, 150, 250).commit()
            for (let y = 240; y >= 100; y -= 10)
                touch.move(0, view, 150, y).commit()
            verify(view.contentY > 100, view.contentY)
            touch.release(0, view, 150, 100).commit()
            view.cancelFlick()
            view.contentY = 0
            mouseDrag(view, 150, 250, 0, -150)
            compare(view.contentY, 0)
        }

        function test_aFingerStopsAtTheEnds() {
            const touch = touchEvent(view)
            touch.press(0, view, 150, 100).commit()
            for (let y = 110; y <= 250; y += 10)
                touch.move(0, view, 150, y).commit()
            compare(view.contentY, 0)
            touch.release(0, view, 150, 250).commit()
            view.cancelFlick()
        }

        function test_aTapReachesTheControlUnderTheFinger() {
            pressed.clear()
            const touch = touchEvent(top)
            touch.press(0, top).commit()
            touch.release(0, top).commit()
            compare(pressed.count, 1)
        }

        function test_aControlReachedByTabComesIntoView() {
            top.forceActiveFocus()
            keyClick(Qt.Key_Tab)
            verify(middle.activeFocus)
            const y = middle.mapToItem(root, 0, 0).y
            verify(y >= 0 && y + middle.height <= root.height, y)
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_Tab)
            verify(top.activeFocus)
            verify(top.mapToItem(root, 0, 0).y >= 0)
        }

        function test_theBarShowsItselfWhileThePageMovesAndForAMomentAfter() {
            const thumb = findChild(view, "thumb")
            mouseMove(view, 150, 150) // away from the bar
            tryCompare(thumb, "opacity", 0)
            Theme.reducedMotion = true // it appears at once, however late the next frame is
            const begin = Date.now()
            mouseWheel(view, 150, 150, 0, -120)
            compare(thumb.opacity, 1)
            tryCompare(thumb, "opacity", 0, 3000)
            verify(Date.now() - begin > 400, "it stays for a moment")
        }

        function test_theThumbIsDraggedAndStopsAtTheEnds() {
            const thumb = findChild(view, "thumb")
            const bar = thumb.parent
            const end = view.contentHeight - view.height
            mousePress(bar, 6, 10)
            compare(view.contentY, 0, "taking hold of it moves nothing")
            mouseMove(bar, 6, 10 + bar.travel / 2)
            fuzzyCompare(thumb.y, bar.travel / 2, 1) // the pointer moves in whole points
            fuzzyCompare(view.contentY, end / 2, end / bar.travel)
            mouseMove(bar, 6, 1000)
            compare(view.contentY, end)
            mouseMove(bar, 6, -1000)
            compare(view.contentY, 0)
            mouseRelease(bar, 6, -1000)
        }

        function test_aPressBesideTheThumbBringsItThere() {
            const bar = findChild(view, "thumb").parent
            mouseClick(bar, 6, bar.height - 1)
            compare(view.contentY, view.contentHeight - view.height)
        }

        function test_pageKeysScroll() {
            top.forceActiveFocus()
            keyClick(Qt.Key_PageDown)
            compare(view.contentY, 270)
            keyClick(Qt.Key_End)
            compare(view.contentY, view.contentHeight - view.height)
            keyClick(Qt.Key_Home)
            compare(view.contentY, 0)
        }
    }
}
