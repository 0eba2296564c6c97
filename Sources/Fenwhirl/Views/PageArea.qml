import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// Shows the selected page. Only that page exists: the others cost nothing, and each opens at its top.
Item {
    id: root

    required property ViewModels models
    readonly property string pageName: models.pages.selectedName

    function load() {
        const file = pageName.charAt(0).toUpperCase() + pageName.slice(1) + "Page.qml" // "fans" is FansPage.qml
        page.setSource(file, {"models": models})
    }

    readonly property var view: page.item

    Component.onCompleted: load()
    onPageNameChanged: load()

    // Scrolls down by `count` pages, or up when it is negative. A page is 90 % of the visible height.
    function scrollByPages(count: int) {
        if (view)
            view.scrollBy(count * height * 0.9)
    }

    Loader {
        id: page
        anchors.fill: parent

        onLoaded: appear.restart()
    }

    NumberAnimation {
        id: appear
        duration: Theme.pageDuration
        easing.type: Easing.OutCubic
        from: 0
        property: "opacity"
        target: page
        to: 1
    }
}
