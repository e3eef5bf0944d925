pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Asks before anything is removed.
Sheet {
    id: sheet

    required property AppState appState
    required property ConfirmationModel model

    onDismissed: appState.showConfirmation = false

    panel: SheetPanel {
        id: panel

        name: title.text
        inSight: summary.showsCauses ? summary : null
        pinned: [
            NoticeBox {
                visible: warnings.count > 0
                width: parent?.width ?? 0

                Column {
                    width: parent.width
                    spacing: Theme.spacingSmall

                    Repeater {
                        id: warnings

                        model: sheet.model.warnings

                        SymbolText {
                            required property string modelData

                            width: parent?.width ?? 0
                            symbol: "exclamationmark.triangle.fill"
                            text: modelData
                        }
                    }
                }
            },
            Acknowledgement {
                id: acknowledgement

                visible: sheet.model.needsAcknowledgement
                width: parent?.width ?? 0
                text: sheet.model.acknowledgementText
                plainText: sheet.model.plainAcknowledgementText
            }
        ]
        buttons: [
            SecondaryButton {
                focus: true
                text: qsTr("Cancel")
                onClicked: sheet.dismissed()
            },
            PrimaryButton {
                text: qsTr("Delete %1 permanently").arg(sheet.model.totalText)
                isDestructive: true
                minimumWidth: 220
                available: !sheet.model.needsAcknowledgement || acknowledgement.checked
                onClicked: sheet.appState.performClean()
            }
        ]

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "exclamationmark.triangle.fill"
            size: 36
            color: Theme.warning
        }

        CentredText {
            id: title

            text: qsTr("Confirm cleanup")
            font: Theme.title
        }

        CentredText {
            text: qsTr("Removal is permanent — files do not go to the Trash.")
            font: Theme.body
            color: Theme.textSecondary
        }

        ConfirmationSummary {
            id: summary

            width: parent.width
            maximumHeight: panel.roomFor(summary)
            model: sheet.model
        }
    }
}
