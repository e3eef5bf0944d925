import QtQuick
import Zorvane

/// What the last scan found, and the choice of what goes.
FocusScope {
    id: view

    required property AppState appState

    readonly property real margin: 20
    readonly property real contentWidth: Math.min(width - 2 * margin, 1180)
    readonly property real contentX: Math.round((width - contentWidth) / 2)

    implicitWidth: 900
    implicitHeight: 640

    Figures {
        id: figures

        appState: view.appState
    }

    TopBar {
        id: topBar

        width: parent.width
        userName: figures.userName
    }

    SummaryPanel {
        id: summary

        anchors.top: topBar.bottom
        anchors.topMargin: 10
        x: view.contentX
        appState: view.appState
    }

    ResultsList {
        anchors.top: topBar.bottom
        anchors.bottom: actionBar.top
        anchors.left: summary.right
        anchors.leftMargin: Theme.spacingLarge
        width: view.contentWidth - summary.width - Theme.spacingLarge + gutter
        focus: true
        appState: view.appState
    }

    ActionBar {
        id: actionBar

        anchors.bottom: parent.bottom
        width: parent.width
        contentWidth: view.contentWidth
        appState: view.appState
        figures: figures
    }

    SheetHost {
        anchors.fill: parent
        appState: view.appState
    }

    CleaningOverlay {
        anchors.fill: parent
        visible: view.appState.isCleaning
    }
}
