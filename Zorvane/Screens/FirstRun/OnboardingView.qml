import QtQuick
import Zorvane

/// Explains the disk permission, and checks every two seconds whether it has been granted.
ScreenStack {
    id: view

    required property AppState appState

    readonly property real textWidth: Math.min(460, availableWidth)

    padding: 40
    spacing: 24

    Timer {
        interval: 2000
        repeat: true
        running: true
        onTriggered: view.appState.refreshPermissionState()
    }

    GradientTile {
        anchors.horizontalCenter: parent.horizontalCenter
        fromColor: Theme.withOpacity(Theme.primary, 0.9)
        toColor: Theme.primaryDeep
        symbol: "lock.shield"
        symbolSize: 40
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Permission to see your disk")
        font: Theme.title
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        width: view.textWidth
        text: qsTr("To measure everything that can be freed, Zorvane needs the \"Full Disk Access\" permission. The app only reads and shows — nothing is removed without your explicit confirmation.")
        font: Theme.body
        color: Theme.textSecondary
        horizontalAlignment: Text.AlignHCenter
        lineHeight: 1.25
    }

    GlassCard {
        id: steps

        readonly property real stepWidth: view.textWidth - 2 * padding

        anchors.horizontalCenter: parent.horizontalCenter
        padding: Theme.spacingLarge

        contentItem: Column {
            spacing: 12

            OnboardingStep {
                number: 1
                instruction: qsTr("Click **Open System Settings** below")
                maximumWidth: steps.stepWidth
            }

            OnboardingStep {
                number: 2
                instruction: qsTr("Turn on the switch next to **Zorvane**")
                maximumWidth: steps.stepWidth
            }

            OnboardingStep {
                number: 3
                instruction: qsTr("Come back here — the app detects it automatically ✓")
                maximumWidth: steps.stepWidth
            }
        }
    }

    PrimaryButton {
        anchors.horizontalCenter: parent.horizontalCenter
        focus: true
        text: qsTr("Open System Settings")
        minimumWidth: 220
        onClicked: view.appState.openPermissionSettings()
    }

    PlainButton {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Continue without permission (partial results)")
        font: Theme.callout
        onClicked: view.appState.continueWithoutPermission()
    }
}
