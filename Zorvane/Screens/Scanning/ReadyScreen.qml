import QtQuick
import Zorvane

/// Where a scan is started.
ScreenStack {
    id: screen

    required property AppState appState

    padding: 48

    GradientTile {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "internaldrive.fill"
        symbolSize: 40
        shadow: true
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Theme.spacingSmall

        ScreenText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Zorvane"
            font: Theme.textFont(32, Font.Bold)
        }

        ScreenText {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, screen.availableWidth)
            text: qsTr("Find out how much space is stuck in caches, logs and temporary files.")
            color: Theme.textSecondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }

    PrimaryButton {
        anchors.horizontalCenter: parent.horizontalCenter
        focus: true
        text: qsTr("Scan my Mac")
        minimumWidth: 220
        onClicked: screen.appState.startScan()
    }

    NoticeRow {
        anchors.horizontalCenter: parent.horizontalCenter
        maximumWidth: screen.availableWidth
        symbol: "checkmark.shield.fill"
        symbolColor: Theme.success
        text: qsTr("Nothing is removed without your explicit confirmation.")
        color: Theme.textTertiary
    }

    NoticeRow {
        anchors.horizontalCenter: parent.horizontalCenter
        maximumWidth: screen.availableWidth
        visible: !screen.appState.hasFullDiskAccess
        symbol: "exclamationmark.triangle"
        text: qsTr("No Full Disk Access — results will be partial")
        color: Theme.warning
    }
}
