import QtQuick

// A window that is exactly as large as its content and that neither the user nor the window manager can resize.
//   fittingSize   the size of the content; the window follows it, also while it is shown
//   rim           how wide the part along its edges is that does not look like the window, such as its shadow; 0 by default
Window {
    id: root

    required property size fittingSize
    property real rim: 0
    readonly property int fittingWidth: Math.ceil(fittingSize.width)
    readonly property int fittingHeight: Math.ceil(fittingSize.height)

    Component.onCompleted: fit()
    onFittingHeightChanged: fit()
    onFittingWidthChanged: fit()

    // The order matters: neither the window nor its window manager accepts a size outside the limits that it knows at that
    // moment. The order in which bindings are evaluated is not defined.
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
