import QtQuick
import QtQuick.Window
import Zorvane

/// The one window. It has no frame of the desktop's: the background reaches to its edges, and the
/// title bar and the edges do what a frame would.
Window {
    id: window

    required property AppState appState
    required property bool animated

    visible: true
    width: 1080
    height: 760
    minimumWidth: 900
    minimumHeight: 640
    title: "Zorvane"
    color: Theme.background
    flags: Qt.Window | Qt.FramelessWindowHint

    onClosing: close => {
        close.accepted = false;
        window.appState.requestClose();
    }

    // Nothing has the keyboard when what had it went while a menu or a sheet was open.
    onActiveFocusItemChanged: {
        if (active && activeFocusItem === contentItem)
            screens.forceActiveFocus();
    }

    Component.onCompleted: {
        Theme.animated = window.animated;
        window.appState.refreshPermissionState();
    }

    Connections {
        target: window.appState

        function onReadyToClose() {
            Qt.exit(0);
        }
    }

    Shortcut {
        sequences: ["Ctrl+Q", "Ctrl+W"]
        onActivated: window.close()
    }

    UpdaterController {
        id: updater
    }

    ScanView {
        id: screens

        anchors.fill: parent
        appState: window.appState
        termsURL: LegalPages.termsURL
        privacyURL: LegalPages.privacyURL
    }

    TitleBar {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        target: window
        updater: updater
        onAboutRequested: about.shown = true
    }

    AboutSheet {
        id: about

        anchors.fill: parent
        version: updater.installedVersion
        onDismissed: shown = false
    }

    UpdateSheet {
        anchors.fill: parent
        updater: updater
    }

    ClosingOverlay {
        anchors.fill: parent
        visible: window.appState.isClosing
    }

    ResizeEdges {
        anchors.fill: parent
        target: window
    }
}
