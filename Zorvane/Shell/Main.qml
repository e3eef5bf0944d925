import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Zorvane

/// The only window. It is frameless, so that the background reaches its edges; TitleBar and
/// ResizeEdges do the work of a frame.
Window {
    id: window

    required property AppState appState
    required property Models models
    required property bool animated

    /// Whether something covers the screens and the title bar, which have to be disabled then, or
    /// assistive tools would press their controls.
    readonly property bool isCovered: titleBar.isMenuOpen || about.isOpen || update.isOpen || closing.visible
    /// With which the screens get the focus back, so that it shows if it did before.
    property int focusReason: Qt.OtherFocusReason

    visible: true
    width: 1080
    height: 760
    // The results need more room than the screens before them, so a smaller window grows. While one
    // screen replaces another there is none to ask.
    minimumWidth: Math.max(520, screens.implicitWidth)
    minimumHeight: Math.max(640, screens.implicitHeight)
    onMinimumWidthChanged: width = Math.max(width, minimumWidth)
    onMinimumHeightChanged: height = Math.max(height, minimumHeight)
    title: "Zorvane"
    color: Theme.background
    flags: Qt.Window | Qt.FramelessWindowHint

    onClosing: close => {
        close.accepted = false;
        window.appState.requestClose();
    }

    // The content item gets the focus when the focused item disappears, or when assistive tools try
    // to focus a covered one.
    onActiveFocusItemChanged: {
        const control = activeFocusItem as T.Control;
        if (control)
            focusReason = control.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason;
        if (!active || activeFocusItem !== contentItem)
            return;
        if (closing.visible)
            closing.forceActiveFocus();
        else if (update.isOpen)
            update.takeKeyboard();
        else if (about.isOpen)
            about.takeKeyboard();
        else
            screens.forceActiveFocus(focusReason);
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
        enabled: !window.isCovered
        appState: window.appState
        models: window.models
        termsURL: LegalPages.termsURL
        privacyURL: LegalPages.privacyURL
    }

    TitleBar {
        id: titleBar

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        enabled: !window.isCovered
        target: window
        updater: updater
        onAboutRequested: about.shown = true
    }

    AboutSheet {
        id: about

        anchors.fill: parent
        enabled: !update.isOpen && !closing.visible
        version: updater.installedVersion
        onDismissed: shown = false
    }

    UpdateSheet {
        id: update

        anchors.fill: parent
        enabled: !closing.visible
        updater: updater
    }

    BusyOverlay {
        id: closing

        anchors.fill: parent
        text: qsTr("Finishing the item in hand, then closing…")
        visible: window.appState.isClosing
    }

    ResizeEdges {
        anchors.fill: parent
        target: window
    }
}
