import QtQuick
import Zorvane

/// Makes a whole card of the results a button.
BaseButton {
    id: button

    anchors.fill: parent
    focus: true

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    FocusRing {
        shown: button.visualFocus
        gap: -2
        cornerRadius: Theme.radiusLarge
    }
}
