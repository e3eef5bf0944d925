import QtQuick
import Zorvane

/// Explains the release of downloads.
Column {
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

        text: qsTr("Free up iCloud space")
        font: Theme.title
    }

    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width, 460)
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("These files are already in iCloud. Freeing them removes only the download on this Mac — they come back when you open them (internet required).")
        color: Theme.textSecondary
    }
}
