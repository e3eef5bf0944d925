pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Zorvane

/// The applications in the cloud drive, which cannot be released.
NoticeBox {
    id: notice

    required property ICloudModel model

    readonly property real indent: 21

    Column {
        width: parent.width
        spacing: Theme.spacingSmall

        ReasonRow {
            width: parent.width
            symbol: "shippingbox.fill"
            symbolWidth: 13
            title: notice.model.appsTitle
            detail: qsTr("macOS doesn't release apps — and re-downloads the ones you release. To get that space back, move them out of iCloud Drive.")
        }

        Column {
            x: notice.indent
            width: parent.width - x
            spacing: 3

            Repeater {
                model: notice.model.appNames

                RowLayout {
                    id: app

                    required property int index
                    required property string modelData

                    width: parent?.width ?? 0
                    spacing: Theme.spacingMedium

                    Label {
                        Layout.alignment: Qt.AlignBaseline
                        Layout.fillWidth: true
                        text: app.modelData
                        font: Theme.fileFont(11, Font.Medium)
                        elide: Text.ElideMiddle
                    }

                    Label {
                        Layout.alignment: Qt.AlignBaseline
                        text: notice.model.appSizes[app.index] ?? ""
                        font: Theme.numberFont(11, Font.Normal)
                        color: Theme.textSecondary
                    }
                }
            }
        }

        Label {
            visible: text !== ""
            x: notice.indent
            text: notice.model.moreAppsText
            font: Theme.caption
            color: Theme.textTertiary
        }

        SecondaryButton {
            x: notice.indent
            text: qsTr("Show in Finder")
            small: true
            cornerRadius: Theme.radiusCapsule
            onClicked: notice.model.revealApps()
        }
    }
}
