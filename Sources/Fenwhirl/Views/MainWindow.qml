import QtQuick

Window {
    width: 1040
    height: 680
    minimumWidth: 920
    minimumHeight: 560
    title: "Fenwhirl"
    visible: true
}
