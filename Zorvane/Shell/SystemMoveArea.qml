import QtQuick

/// An area from which the desktop moves or resizes the window. It keeps the button's release to
/// itself then, so that the area has to let go of the mouse, or the next click would be lost.
MouseArea {
    id: area

    function letGo() {
        enabled = false;
        enabled = true;
    }

    acceptedButtons: Qt.LeftButton
}
