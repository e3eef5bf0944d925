import QtQuick
import Zorvane

/// Asks the user to accept the terms.
ScreenStack {
    id: view

    required property AppState appState
    property url termsURL
    property url privacyURL

    /// The page that was asked for last. Nobody can tell whether a browser has opened it.
    property url openedURL

    function open(page: url) {
        openedURL = page;
        Qt.openUrlExternally(page);
    }

    padding: 40
    spacing: 24

    GradientTile {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "doc.text.magnifyingglass"
        symbolSize: 38
        shadow: true
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Before you start")
        font: Theme.title
    }

    GlassCard {
        anchors.horizontalCenter: parent.horizontalCenter
        padding: Theme.spacingLarge

        contentItem: Column {
            spacing: Theme.spacingMedium

            SymbolText {
                width: Math.min(implicitWidth, Math.min(480, view.availableWidth) - 2 * Theme.spacingLarge)
                symbol: "eye.slash.fill"
                symbolColor: Theme.primaryLight
                symbolSize: 14
                text: qsTr("The app collects no data: no accounts, no telemetry, nothing leaves your Mac.")
                font: Theme.body
            }
        }
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Theme.spacingSmall

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, view.availableWidth)
            text: qsTr("By continuing, you agree to the Terms of Service and Privacy Policy.")
            font: Theme.callout
            color: Theme.textSecondary
            horizontalAlignment: Text.AlignHCenter
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 18

            LinkButton {
                text: qsTr("Terms of Service")
                onClicked: view.open(view.termsURL)
            }

            LinkButton {
                text: qsTr("Privacy Policy")
                onClicked: view.open(view.privacyURL)
            }
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: view.openedURL.toString() !== ""
            width: Math.min(implicitWidth, view.availableWidth)
            text: qsTr("If no browser opens, you find the page here: %1").arg(view.openedURL)
            font: Theme.caption
            color: Theme.textTertiary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WrapAnywhere
        }
    }

    PrimaryButton {
        anchors.horizontalCenter: parent.horizontalCenter
        focus: true
        text: qsTr("Accept and continue")
        minimumWidth: 220
        onClicked: view.appState.acceptTerms()
    }

    PlainButton {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Quit")
        font: Theme.callout
        onClicked: Qt.quit()
    }
}
