import QtQuick
import Zorvane

/// The sheets over the results, of which one is shown at a time.
Item {
    id: host

    required property AppState appState

    ConfirmationSheet {
        anchors.fill: parent
        appState: host.appState
        shown: appState.showConfirmation && !appState.hasCleaningReport
    }

    ICloudSheet {
        anchors.fill: parent
        appState: host.appState
        shown: appState.showICloud && !appState.hasCleaningReport && !appState.showConfirmation
    }

    ReportSheet {
        anchors.fill: parent
        appState: host.appState
        shown: appState.hasCleaningReport
    }
}
