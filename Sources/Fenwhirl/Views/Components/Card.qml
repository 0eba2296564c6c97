import QtQuick

// A surface that groups what belongs together.
Rectangle {
    radius: 16
}
