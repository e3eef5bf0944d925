pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Starts a scan.
ScreenStack {
    id: screen

    required property AppState appState

    padding: 48

    component Notice: SymbolText {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, screen.availableWidth)
        height: Math.max(implicitHeight, symbolHeight)
        symbolSize: 13
    }

    GradientTile {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "internaldrive.fill"
        symbolSize: 40
        shadow: true
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Theme.spacingSmall

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Zorvane"
            font: Theme.textFont(32, Font.Bold)
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, screen.availableWidth)
            text: qsTr("Find out how much space is stuck in caches, logs and temporary files.")
            font: Theme.body
            color: Theme.textSecondary
            horizontalAlignment: Text.AlignHCenter
        }
    }

    PrimaryButton {
        anchors.horizontalCenter: parent.horizontalCenter
        focus: true
        text: qsTr("Scan my Mac")
        minimumWidth: 220
        onClicked: screen.appState.startScan()
    }

    Notice {
        symbol: "checkmark.shield.fill"
        symbolColor: Theme.success
        text: qsTr("Nothing is removed without your explicit confirmation.")
        color: Theme.textTertiary
    }

    Notice {
        visible: !screen.appState.hasFullDiskAccess
        symbol: "exclamationmark.triangle"
        text: qsTr("No Full Disk Access — results will be partial")
        color: Theme.warning
    }
}
