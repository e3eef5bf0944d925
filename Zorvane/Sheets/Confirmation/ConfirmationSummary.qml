pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zorvane

/// The selected size of each area, which scroll if they have to, and the total.
GlassCard {
    id: summary

    required property ConfirmationModel model
    /// The areas scroll if the card would be higher. Three of them are always in sight.
    property real maximumHeight: Infinity
    property alias showsCauses: gain.isExpanded

    Column {
        id: column

        width: parent.width
        spacing: 9

        KeyboardList {
            id: areas

            readonly property real least: 3 * rowHeight + 2 * spacing
            readonly property real room: summary.maximumHeight - line.height - total.height - gain.height - 3 * column.spacing - summary.topPadding - summary.bottomPadding

            visible: count > 0
            width: parent.width
            height: Math.min(contentHeight, Math.max(least, room))
            spacing: column.spacing
            rowHeight: total.height
            model: summary.model.rows
            interactive: contentHeight > height
            Accessible.name: qsTr("Selected areas")

            T.ScrollBar.vertical: ThinScrollBar {
                parent: summary
                x: summary.width - width - 1
                y: areas.y + summary.topPadding
                height: areas.height
            }

            delegate: KeyboardRow {
                id: area

                required property confirmationRow modelData

                width: areas.width
                implicitHeight: texts.implicitHeight
                focusTarget: area
                activeFocusOnTab: isTabStop && areas.interactive
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("%2, %1").arg(modelData.sizeText).arg(modelData.title)

                FocusRing {
                    shown: area.activeFocus
                    gap: 2
                    cornerRadius: 4
                }

                RowLayout {
                    id: texts

                    width: parent.width
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
        }

        Rectangle {
            id: line

            width: parent.width
            height: 1
            color: Theme.glassBorder
        }

        RowLayout {
            id: total

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

        ReclaimCauses {
            id: gain

            width: parent.width
            text: summary.model.reclaimText || qsTr("Finding out how much free space that brings…")
            causes: summary.model.reclaimRows
        }
    }
}
