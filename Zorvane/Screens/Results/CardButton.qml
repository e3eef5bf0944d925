import QtQuick
import Zorvane

/// A press area that fills a card of the results.
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
