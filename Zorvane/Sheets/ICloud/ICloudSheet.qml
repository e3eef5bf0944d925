pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Releases downloads of the cloud drive.
Sheet {
    id: sheet

    required property AppState appState

    onDismissed: appState.showICloud = false

    panel: SheetPanel {
        name: header.title
        columnWidth: 500
        spacing: 16
        buttons: [
            SecondaryButton {
                focus: true
                text: qsTr("Close")
                onClicked: sheet.dismissed()
            },
            SecondaryButton {
                visible: icloud.busyText !== ""
                text: qsTr("Try again")
                onClicked: sheet.appState.retryBusyICloudFolders()
            },
            PrimaryButton {
                text: qsTr("Free up %1").arg(icloud.selectedText)
                minimumTextWidth: 170
                busy: sheet.appState.isEvicting
                available: icloud.canRelease
                opacity: icloud.hasSelectedBytes ? 1 : 0.5
                onClicked: sheet.appState.requestEvict()
            }
        ]

        ICloudModel {
            id: icloud

            appState: sheet.appState
        }

        ICloudHeader {
            id: header

            width: parent.width
        }

        Expectations {
            visible: icloud.isMeasuring
            width: parent.width
        }

        SecondaryButton {
            visible: !icloud.isMeasuring
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Rescan")
            symbol: "arrow.clockwise"
            cornerRadius: Theme.radiusCapsule
            onClicked: sheet.appState.reloadICloud()
        }

        ProgressLine {
            visible: icloud.isMeasuring
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width)
            text: icloud.measuringText
            font: Theme.numberFont(11, Font.Normal)
        }

        ProgressLine {
            visible: text !== ""
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, 460)
            text: icloud.freeingText
        }

        CentredText {
            visible: icloud.isEmpty
            topPadding: 30
            bottomPadding: 30
            text: qsTr("Nothing downloaded — your iCloud Drive is already optimized.")
            font: Theme.body
            color: Theme.textSecondary
        }

        ICloudList {
            width: parent.width
            model: icloud
        }

        NoticeBox {
            visible: icloud.busyText !== ""
            width: parent.width

            SymbolText {
                width: parent.width
                symbol: "clock.badge.exclamationmark"
                symbolSize: 13
                text: icloud.busyText
                font: Theme.caption
                color: Theme.textSecondary
            }
        }

        ReleaseResult {
            visible: icloud.hasReport
            width: parent.width
            model: icloud
        }

        NoticeBox {
            visible: icloud.beforeFreeingText !== ""
            width: parent.width
            color: Theme.catOther
            topPadding: 9
            bottomPadding: 9

            SymbolText {
                width: parent.width
                symbol: "icloud"
                symbolColor: Theme.catOther
                symbolSize: 13
                text: icloud.beforeFreeingText
                font: Theme.caption
                color: Theme.textSecondary
            }
        }

        AppsNotice {
            visible: icloud.appsTitle !== ""
            width: parent.width
            model: icloud
        }
    }
}
