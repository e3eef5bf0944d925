import QtQuick
import Zorvane

/// The sheets over the results. At most one is open.
Item {
    id: host

    required property AppState appState

    /// The open one, or null.
    readonly property Sheet sheet: confirmation.isOpen ? confirmation : icloud.isOpen ? icloud : report.isOpen ? report : null

    ConfirmationSheet {
        id: confirmation

        anchors.fill: parent
        appState: host.appState
        shown: appState.showConfirmation && !appState.hasCleaningReport
    }

    ICloudSheet {
        id: icloud

        anchors.fill: parent
        appState: host.appState
        shown: appState.showICloud && !appState.hasCleaningReport && !appState.showConfirmation
    }

    ReportSheet {
        id: report

        anchors.fill: parent
        appState: host.appState
        shown: appState.hasCleaningReport
    }
}
