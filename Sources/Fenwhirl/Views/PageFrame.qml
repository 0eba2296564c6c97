import Fenwhirl.Components

// What every page of the main window stands in: the same frame on each, so that a title never jumps from page to page.
//   ofText   whether the page is one column of sentences, which would be hard to read across a large screen
ScrollView {
    property bool ofText: false

    columnWidth: ofText ? Math.round(760 * Theme.textScale) : Infinity
    frameWidth: Math.round(1884 * Theme.textScale)
}
