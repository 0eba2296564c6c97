import QtQuick
import Fenwhirl.Components
import Fenwhirl.Views

// The presets as a drop-down menu.
DropDownMenu {
    required property PresetList presets

    caption: qsTr("Préréglage")
    currentIndex: presets.activeIndex
    currentText: presets.activeTitle
    labels: presets.titles

    onActivated: index => presets.apply(index)
}
