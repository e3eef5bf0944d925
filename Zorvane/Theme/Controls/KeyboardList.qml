import QtQuick
import Zorvane

/// A list of KeyboardRows. Tab goes through the controls of the current row; the arrow keys, Home,
/// End and the page keys go to other rows, including those that are not instantiated yet.
ListView {
    id: list

    /// Roughly, for the page keys.
    property real rowHeight: 40

    function goTo(row: int) {
        currentIndex = Math.max(0, Math.min(row, count - 1));
        positionViewAtIndex(currentIndex, ListView.Contain);
        (currentItem as KeyboardRow)?.takeKeyboard();
    }

    function rowsPerPage(): int {
        return Math.max(1, Math.floor(height / rowHeight));
    }

    clip: true
    // Buffered rows would be created asynchronously; Qt 6.4 warns if they are gone by then.
    cacheBuffer: 0
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    Accessible.role: Accessible.List

    Keys.onUpPressed: goTo(currentIndex - 1)
    Keys.onDownPressed: goTo(currentIndex + 1)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Home:
            goTo(0);
            break;
        case Qt.Key_End:
            goTo(count - 1);
            break;
        case Qt.Key_PageUp:
            goTo(currentIndex - rowsPerPage());
            break;
        case Qt.Key_PageDown:
            goTo(currentIndex + rowsPerPage());
            break;
        default:
            return;
        }
        event.accepted = true;
    }
}
