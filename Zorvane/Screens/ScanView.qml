import QtQuick
import Zorvane

/// The root of the window: the background and, on it, the screen of the phase.
Item {
    id: view

    required property AppState appState
    property url termsURL
    property url privacyURL

    AuroraBackground {
        anchors.fill: parent
    }
}
