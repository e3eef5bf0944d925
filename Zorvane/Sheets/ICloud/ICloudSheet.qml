pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Releases downloads of the cloud drive.
Sheet {
    id: sheet

    required property CloudState cloud
    required property ICloudModel model

    onDismissed: cloud.showICloud = false

    panel: SheetPanel {
        id: panel

        name: header.title
        columnWidth: 500
        spacing: 16
        pinned: AppsNotice {
            visible: sheet.model.appsTitle !== ""
            width: parent?.width ?? 0
            model: sheet.model
        }
        buttons: [
            SecondaryButton {
                focus: true
                text: qsTr("Close")
                onClicked: sheet.dismissed()
            },
            SecondaryButton {
                visible: sheet.model.busyText !== ""
                text: qsTr("Try again")
                onClicked: sheet.cloud.retryBusyICloudFolders()
            },
            PrimaryButton {
                text: qsTr("Free up %1").arg(sheet.model.selectedText)
                minimumTextWidth: 170
                busy: sheet.cloud.isEvicting
                available: sheet.model.canRelease
                opacity: sheet.model.hasSelectedBytes ? 1 : 0.5
                onClicked: sheet.cloud.requestEvict()
            }
        ]

        ICloudHeader {
            id: header

            width: parent.width
            model: sheet.model
        }

        Expectations {
            visible: sheet.model.isMeasuring
            width: parent.width
            model: sheet.model
        }

        SecondaryButton {
            visible: !sheet.model.isMeasuring && !sheet.cloud.isFetching
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Rescan")
            symbol: "arrow.clockwise"
            cornerRadius: Theme.radiusCapsule
            onClicked: sheet.cloud.reloadICloud()
        }

        ProgressLine {
            visible: sheet.model.isMeasuring
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width)
            text: sheet.model.measuringText
            font: Theme.numberFont(11, Font.Normal)
        }

        ProgressLine {
            visible: text !== ""
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, 460)
            text: sheet.model.freeingText
        }

        ProgressLine {
            visible: text !== ""
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, 460)
            text: sheet.model.fetchingText
        }

        CentredText {
            visible: text !== ""
            topPadding: 30
            bottomPadding: 30
            text: sheet.model.emptyText
            font: Theme.body
            color: Theme.textSecondary
        }

        ICloudList {
            id: list

            width: parent.width
            maximumHeight: panel.roomFor(list)
            model: sheet.model
        }

        Reasons {
            width: parent.width
            sentences: sheet.model.closedTexts
        }

        Reasons {
            width: parent.width
            sentences: sheet.model.fetchRefusals
        }

        NoticeBox {
            visible: sheet.model.busyText !== ""
            width: parent.width

            SymbolText {
                width: parent.width
                symbol: "clock.badge.exclamationmark"
                symbolSize: 13
                text: sheet.model.busyText
                font: Theme.caption
                color: Theme.textSecondary
            }
        }

        ReleaseResult {
            visible: sheet.model.hasReport
            width: parent.width
            model: sheet.model
        }

        NoticeBox {
            visible: sheet.model.beforeFreeingText !== ""
            width: parent.width
            color: Theme.catOther
            topPadding: 9
            bottomPadding: 9

            SymbolText {
                width: parent.width
                symbol: "icloud"
                symbolColor: Theme.catOther
                symbolSize: 13
                text: sheet.model.beforeFreeingText
                font: Theme.caption
                color: Theme.textSecondary
            }
        }
    }
}
