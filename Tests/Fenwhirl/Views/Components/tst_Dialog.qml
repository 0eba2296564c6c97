import QtQuick
import QtTest
import Fenwhirl.Components

Item {
    id: root
    height: 500
    width: 600

    NeutralButton { id: outside; text: "dehors" }

    Dialog {
        id: dialog
        acceptText: "Fermer"
        cancelText: "Annuler"
        destructiveText: "Forcer la fermeture"
        message: "Les documents non enregistrés dans cette application peuvent être perdus."
        title: "Fermer Firefox ?"
        onAccepted: root.answers.push("accepted")
        onCancelled: root.answers.push("cancelled")
        onDestructive: root.answers.push("destructive")
    }

    property var answers: []

    TestCase {
        name: "Dialog"
        when: windowShown

        function init() {
            Theme.reducedMotion = true
            root.answers = []
            dialog.open()
            tryCompare(dialog, "opened", true)
            tryVerify(() => button("Annuler").y > 0)
        }

        function cleanup() {
            dialog.close()
            tryCompare(dialog, "visible", false)
        }

        function button(text: string): Item {
            const all = []
            const visit = item => {
                if (accessibility.role(item) === Accessible.Button)
                    all.push(item)
                for (const child of Array.from(item.children))
                    visit(child)
            }
            visit(dialog.contentItem)
            return all.find(candidate => candidate.text === text)
        }

        function finish(): string {
            tryCompare(dialog, "visible", false)
            compare(root.answers.length, 1)
            return root.answers[0]
        }

        function test_theThreeButtonsInOrder() {
            compare(dialog.width, 300)
            verify(button("Fermer").y < button("Forcer la fermeture").y)
            verify(button("Forcer la fermeture").y < button("Annuler").y)
            compare(button("Fermer").height, 32)
        }

        function test_eachButtonAnswers_data() {
            return [
                { tag: "Fermer", answer: "accepted" },
                { tag: "Forcer la fermeture", answer: "destructive" },
                { tag: "Annuler", answer: "cancelled" }
            ]
        }

        function test_eachButtonAnswers(row) {
            mouseClick(button(row.tag))
            compare(finish(), row.answer)
        }

        function test_returnIsTheFirstButton() {
            keyClick(Qt.Key_Return)
            compare(finish(), "accepted")
        }

        function test_escapeCancels() {
            keyClick(Qt.Key_Escape)
            compare(finish(), "cancelled")
        }

        function test_tabStaysInside() {
            for (let i = 0; i < 7; ++i) {
                keyClick(Qt.Key_Tab)
                verify(!outside.activeFocus)
            }
        }

        function test_returnOnAnotherButtonIsThatButton() {
            button("Annuler").forceActiveFocus()
            keyClick(Qt.Key_Return)
            compare(finish(), "cancelled")
        }

        function test_isReadAsOneModalDialog() {
            const popup = dialog.contentItem.parent
            compare(accessibility.role(popup), Accessible.Dialog)
            compare(accessibility.name(popup), "Fermer Firefox ?")
            verify(accessibility.description(popup).startsWith("Les documents"))
            verify(accessibility.modal(popup))
            compare(accessibility.children(popup), [dialog.title, dialog.message, "Fermer", "Forcer la fermeture", "Annuler"])
            compare(accessibility.nameAround(button("Annuler")), "Fermer Firefox ?")
        }

        function test_aPressOutsideDoesNotAnswer() {
            mouseClick(root, 5, 495)
            verify(dialog.opened)
            compare(root.answers.length, 0)
        }
    }
}
