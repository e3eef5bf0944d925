import QtQuick
import Zorvane

/// Darkens whatever it covers and, while enabled, keeps the mouse from it.
Rectangle {
    required property real darkness

    color: Theme.black(darkness)

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        cursorShape: Qt.ArrowCursor
        onWheel: wheel => { wheel.accepted = true; }
    }
}
