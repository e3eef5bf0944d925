import QtQuick
import QtQuick.Window

Window {
    visible: true
    width: 1080
    height: 760
    title: "Zorvane"
}
