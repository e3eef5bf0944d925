pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// The reasons why items were skipped, and their paths.
GlassCard {
    id: summary

    required property ReportModel model
    property bool showDetails: false

    Column {
        width: parent.width
        spacing: 10

        Repeater {
            model: summary.model.reasons

            ReasonRow {
                required property skippedReason modelData

                width: parent.width
                symbol: modelData.symbol
                title: modelData.title
                detail: modelData.detail
            }
        }

        Label {
            width: parent.width
            text: qsTr("That's why the freed total is smaller than the estimate.")
            font: Theme.caption
            color: Theme.textTertiary
        }

        PlainButton {
            text: qsTr("Details")
            symbol: summary.showDetails ? "chevron.down" : "chevron.right"
            onClicked: summary.showDetails = !summary.showDetails
        }

        SkippedPaths {
            visible: summary.showDetails
            width: parent.width
            model: summary.model
        }
    }
}
