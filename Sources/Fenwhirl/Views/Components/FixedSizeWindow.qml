import QtQuick

// A window that is exactly as large as its content and that nobody else can resize.
//   fittingSize   the size of the content; the window follows it, also while it is shown
Window {
    id: root

    required property size fittingSize
    readonly property int fittingWidth: Math.ceil(fittingSize.width)
    readonly property int fittingHeight: Math.ceil(fittingSize.height)

    Component.onCompleted: fit()
    onFittingHeightChanged: fit()
    onFittingWidthChanged: fit()

    // In this order: neither the window nor its window manager takes a size outside of the limits that it knows by then.
    // Bindings would be evaluated in an order of their own.
    function fit() {
        minimumWidth = 0
        minimumHeight = 0
        maximumWidth = fittingWidth
        maximumHeight = fittingHeight
        width = fittingWidth
        height = fittingHeight
        minimumWidth = fittingWidth
        minimumHeight = fittingHeight
    }
}
