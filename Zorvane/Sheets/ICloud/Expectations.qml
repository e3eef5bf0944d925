import QtQuick
import Zorvane

/// Explains measuring and releasing, while the user waits.
GlassCard {
    id: expectations

    required property ICloudModel model

    component Expectation: ReasonRow {
        width: parent.width
        symbolColor: Theme.catOther
        symbolSize: 12
        symbolWidth: 16
    }

    Column {
        width: parent.width
        spacing: 10

        Expectation {
            symbol: "clock"
            title: qsTr("Measuring takes seconds to a few minutes.")
            detail: qsTr("It depends on how many %1 files are downloaded on this Mac.").arg(expectations.model.driveNames)
        }

        Expectation {
            symbol: "icloud"
            title: qsTr("Freeing is done by %1 itself.").arg(expectations.model.driveNames)
            detail: qsTr("Large folders take a few minutes; Zorvane only asks and waits.")
        }

        Expectation {
            visible: expectations.model.showsGiven
            symbol: "shippingbox"
            title: qsTr("Apps stored in iCloud Drive can't be released.")
            detail: qsTr("macOS keeps them downloaded. You'll see which ones, with sizes.")
        }
    }
}
