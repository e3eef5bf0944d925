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

        ReasonRow {
            visible: title !== ""
            width: parent.width
            symbol: "lock.fill"
            title: summary.model.inUseTitle
            detail: qsTr("They were being written to right now. Close the app and run Zorvane again to clear them.")
        }

        ReasonRow {
            visible: title !== ""
            width: parent.width
            symbol: "shield.fill"
            title: summary.model.protectedTitle
            detail: qsTr("They pointed into personal areas (like Documents or Photos). Zorvane refused to touch them.")
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
