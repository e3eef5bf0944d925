import QtQuick
import Zorvane

/// The sheets over the results. At most one is open.
Item {
    id: host

    required property AppState appState
    required property Models models

    /// The open one, or null.
    readonly property Sheet sheet: confirmation.isOpen ? confirmation : icloud.isOpen ? icloud : report.isOpen ? report : null

    ConfirmationSheet {
        id: confirmation

        anchors.fill: parent
        appState: host.appState
        model: host.models.confirmation
        shown: appState.showConfirmation && !appState.hasCleaningReport
    }

    ICloudSheet {
        id: icloud

        anchors.fill: parent
        cloud: host.appState.cloud
        model: host.models.icloud
        shown: cloud.showICloud && !host.appState.hasCleaningReport && !host.appState.showConfirmation
    }

    ReportSheet {
        id: report

        anchors.fill: parent
        appState: host.appState
        model: host.models.report
        shown: appState.hasCleaningReport
    }
}
