import Fenwhirl.Components

// The frame of every page of the main window. It is the same for all, so that the title does not move from page to page.
//   ofText   whether the page is one column of sentences, which would be hard to read across a large screen
ScrollView {
    property bool ofText: false

    columnWidth: ofText ? Math.round(760 * Theme.textScale) : Infinity
    frameWidth: Math.round(1884 * Theme.textScale)
}
