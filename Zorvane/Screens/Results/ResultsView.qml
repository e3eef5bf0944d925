import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Zorvane

/// The results of the last scan, in which the user selects the items to remove.
FocusScope {
    id: view

    required property AppState appState
    required property Models models

    readonly property real margin: 20
    readonly property real contentWidth: aligned(Math.min(width - 2 * margin, 1180))
    readonly property real contentX: aligned((width - contentWidth) / 2)
    /// With which the content gets the focus back, so that it shows if it did before.
    property int focusReason: Qt.OtherFocusReason

    /// A multiple of 4 is a whole number of physical pixels at the scales 1.25, 1.5 and 1.75 too, so
    /// that the strips of a card meet.
    function aligned(length: real): real {
        return 4 * Math.floor(length / 4);
    }

    /// The view itself gets the focus when the focused item disappears, or when assistive tools try to
    /// focus a covered one.
    function takeKeyboardBack() {
        const control = Window.activeFocusItem as T.Control;
        if (control)
            focusReason = control.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason;
        if (Window.activeFocusItem !== view)
            return;
        if (overlay.visible)
            overlay.forceActiveFocus();
        else if (sheets.sheet)
            sheets.sheet.takeKeyboard();
        else
            content.forceActiveFocus(focusReason);
    }

    Window.onActiveFocusItemChanged: takeKeyboardBack()

    implicitWidth: 900
    implicitHeight: 640

    FocusScope {
        id: content

        anchors.fill: parent
        focus: true
        // Assistive tools would press covered controls.
        enabled: !sheets.sheet && !overlay.visible

        TopBar {
            id: topBar

            width: parent.width
            userName: view.models.figures.userName
        }

        SummaryPanel {
            id: summary

            anchors.top: topBar.bottom
            anchors.topMargin: 10
            x: view.contentX
            summary: view.models.summary
        }

        ResultsList {
            id: list

            anchors.top: topBar.bottom
            anchors.bottom: actionBar.top
            anchors.left: summary.right
            anchors.leftMargin: Theme.spacingLarge
            width: view.contentWidth - summary.width - Theme.spacingLarge + gutter
            focus: true
            results: view.models.results
            icloud: view.models.icloud
        }

        ActionBar {
            id: actionBar

            anchors.bottom: parent.bottom
            width: parent.width
            contentWidth: view.contentWidth
            appState: view.appState
            figures: view.models.figures
        }
    }

    SheetHost {
        id: sheets

        anchors.fill: parent
        appState: view.appState
        models: view.models
    }

    BusyOverlay {
        id: overlay

        anchors.fill: parent
        darkness: 0.4
        text: qsTr("Cleaning…")
        isLarge: true
        // A window that is closing has an overlay of its own.
        visible: view.appState.isCleaning && !view.appState.isClosing
    }
}
