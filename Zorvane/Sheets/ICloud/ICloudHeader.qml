import QtQuick
import Zorvane

/// Explains the release of downloads.
Column {
    id: header

    required property ICloudModel model
    property alias title: title.text

    spacing: Theme.spacingMedium

    GradientTile {
        anchors.horizontalCenter: parent.horizontalCenter
        size: 56
        cornerRadius: 16
        fromColor: Theme.catOther
        toColor: Theme.primaryDeep
        symbol: "icloud.and.arrow.up"
        symbolSize: 24
    }

    CentredText {
        id: title

        text: qsTr("Free up %1 space").arg(header.model.driveNames)
        font: Theme.title
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width, 460)
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("These files are already in %1. Freeing them removes only the download on this Mac — %2").arg(header.model.driveNames).arg(header.model.returnText)
        color: Theme.textSecondary
    }
}
