import QtQuick

/// An area from which the desktop moves or resizes the window. The desktop swallows the release of
/// the mouse button, so the area has to release the mouse itself, or it would miss the next click.
MouseArea {
    id: area

    function releaseMouse() {
        enabled = false;
        enabled = true;
    }

    acceptedButtons: Qt.LeftButton
}
