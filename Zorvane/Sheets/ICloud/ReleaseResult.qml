pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// The result of the last release.
GlassCard {
    id: evictResult

    required property ICloudModel model

    padding: 12
    cornerRadius: Theme.radiusMedium

    Column {
        width: parent.width
        spacing: Theme.spacingSmall

        ReasonRow {
            width: parent.width
            symbol: evictResult.model.hasFreed ? "checkmark.circle.fill" : "minus.circle.fill"
            symbolColor: evictResult.model.hasFreed ? Theme.success : Theme.warning
            symbolSize: 13
            title: evictResult.model.reportText
            titleFont: Theme.bodySemibold
            detail: qsTr("Measured by this Mac's free space right now. %1 keeps tidying the folder for a few minutes — the list updates when you measure again.").arg(evictResult.model.driveNames)
            detailColor: Theme.textTertiary
        }

        Reasons {
            width: parent.width
            sentences: evictResult.model.refusals
        }
    }
}
