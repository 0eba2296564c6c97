import QtQuick
import Fenwhirl.Components

// The choice of a fan's mode: automatic, constant speed, following a sensor, in this order.
//   autoLabel, constantLabel, sensorLabel   already in the user's language
//   currentIndex    0, 1 or 2; set by the owner
//   signal activated(int index)  as in SegmentedControl
SegmentedControl {
    required property string autoLabel
    required property string constantLabel
    required property string sensorLabel

    labels: [autoLabel, constantLabel, sensorLabel]
}
