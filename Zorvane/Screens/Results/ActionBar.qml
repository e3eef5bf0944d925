import QtQuick
import QtQuick.Layouts
import Zorvane

/// The size of the selection, and the buttons that clean it or scan again.
FocusScope {
    id: bar

    required property AppState appState
    required property Figures figures
    property real contentWidth: width

    implicitHeight: 72

    Rectangle {
        anchors.fill: parent
        color: Theme.black(0.18)
    }

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.white(0.08)
    }

    RowLayout {
        anchors.centerIn: parent
        width: bar.contentWidth
        spacing: Theme.spacingMedium

        Label {
            Layout.fillWidth: true
            text: qsTr("Selected: %1").arg(bar.figures.selectedText)
            font: Theme.textFont(14, Font.DemiBold)
            elide: Text.ElideRight
        }

        SecondaryButton {
            symbol: "arrow.clockwise"
            text: qsTr("Rescan")
            onClicked: bar.appState.startScan()
        }

        PrimaryButton {
            text: qsTr("Clean %1").arg(bar.figures.selectedText)
            minimumWidth: 150
            available: bar.figures.canClean
            opacity: bar.figures.hasSelectedBytes ? 1 : 0.5
            onClicked: bar.appState.requestClean()
        }
    }
}
