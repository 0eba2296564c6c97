import QtQuick
import Fenwhirl.Views

// The part of a fan card for a constant speed.
SliderGroup {
    required property FanRow fan

    from: fan.lowestRPM
    stepSize: 50
    text: fan.constantText
    to: fan.highestRPM
    value: fan.constantRPM

    onMoved: value => fan.constantRPM = value
}
