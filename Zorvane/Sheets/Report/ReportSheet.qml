pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// The report of a clean.
Sheet {
    id: sheet

    required property AppState appState
    required property ReportModel model

    onDismissed: appState.closeReport()

    panel: SheetPanel {
        name: sheet.model.freedText + " " + sheet.model.removedText
        columnWidth: 470
        inSight: skipped.showDetails ? skipped : null
        buttons: Column {
            spacing: 18

            PrimaryButton {
                anchors.horizontalCenter: parent.horizontalCenter
                focus: true
                text: qsTr("Scan again")
                onClicked: {
                    sheet.appState.closeReport();
                    sheet.appState.startScan();
                }
            }

            PlainButton {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Close")
                font: Theme.body
                color: Theme.textTertiary
                onClicked: sheet.dismissed()
            }
        }

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "checkmark.circle.fill"
            size: 44
            color: Theme.success
        }

        CentredText {
            text: sheet.model.freedText
            font: Theme.numberFont(42, Font.Bold)
        }

        CentredText {
            text: sheet.model.removedText
            font: Theme.body
            color: Theme.textSecondary
        }

        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, 420)
            spacing: 4

            CentredText {
                visible: text !== ""
                text: sheet.model.visibleFreedText
                font: Theme.calloutSemibold
                color: Theme.success
            }

            CentredText {
                visible: text !== ""
                text: sheet.model.growthText
                font: Theme.caption
                color: Theme.textSecondary
            }

            CentredText {
                text: qsTr("macOS frees the rest in the background — the numbers can take a few hours to settle.")
                font: Theme.caption
                color: Theme.textTertiary
            }
        }

        GlassCard {
            id: shortfall

            visible: sheet.model.shortfall.length > 0
            width: parent.width

            ReclaimCauses {
                width: parent.width
                text: qsTr("Why the free space has grown by less")
                causes: sheet.model.shortfall
            }
        }

        SkippedSummary {
            id: skipped

            visible: sheet.model.hasSkipped
            width: parent.width
            model: sheet.model
        }
    }
}
