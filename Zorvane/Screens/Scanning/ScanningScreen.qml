import QtQuick
import Zorvane

/// The progress of a scan.
ScreenStack {
    id: screen

    required property AppState appState
    required property Figures figures

    padding: 48
    Keys.onEscapePressed: screen.appState.cancelScan()

    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
        controlSize: Spinner.Large
        color: Theme.primary
        Accessible.name: qsTr("Scanning")
    }

    RollingFigure {
        anchors.horizontalCenter: parent.horizontalCenter
        text: screen.figures.bytesFoundText
        font: Theme.numberFont(44, Font.Bold)
        color: Theme.textPrimary
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, screen.availableWidth)
        text: screen.figures.statusText
        font: Theme.body
        color: Theme.textSecondary
        elide: Text.ElideRight
    }

    SecondaryButton {
        anchors.horizontalCenter: parent.horizontalCenter
        focus: true
        text: qsTr("Cancel")
        onClicked: screen.appState.cancelScan()
    }
}
