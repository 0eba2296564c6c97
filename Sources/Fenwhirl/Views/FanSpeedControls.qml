import QtQuick
import Fenwhirl.Views

// The part of a fan card for the mode with a constant speed.
SliderGroup {
    required property FanRow fan

    from: fan.lowestRPM
    stepSize: 50
    text: fan.constantText
    to: fan.highestRPM
    unit: qsTr("tr/min")
    value: fan.constantRPM
    valueText: fan.constantSpeedText
    widestText: fan.highestText

    onMoved: value => fan.constantRPM = value
}
