pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Zorvane

/// The selected size of each area, and the total.
GlassCard {
    id: summary

    required property ConfirmationModel model

    Column {
        width: parent.width
        spacing: 9

        Repeater {
            model: summary.model.rows

            RowLayout {
                id: area

                required property confirmationRow modelData

                width: parent?.width ?? 0
                spacing: Theme.spacingSmall

                Label {
                    Layout.alignment: Qt.AlignBaseline
                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    text: area.modelData.title
                }

                Label {
                    Layout.alignment: Qt.AlignBaseline
                    visible: area.modelData.isReviewRequired
                    text: qsTr("review required")
                    font: Theme.textFont(10, Font.Bold)
                    color: Theme.warning
                }

                Item {
                    Layout.fillWidth: true
                }

                Label {
                    Layout.alignment: Qt.AlignBaseline
                    text: area.modelData.sizeText
                    font: Theme.numberFont(12, Font.Normal)
                    color: Theme.textSecondary
                }
            }
        }

        Rectangle {
            width: parent.width
            height: 1
            color: Theme.glassBorder
        }

        RowLayout {
            width: parent.width

            Label {
                Layout.alignment: Qt.AlignBaseline
                Layout.fillWidth: true
                text: qsTr("Total")
                font: Theme.calloutBold
            }

            Label {
                Layout.alignment: Qt.AlignBaseline
                text: summary.model.totalText
                font: Theme.numberFont(12, Font.Bold)
            }
        }
    }
}
