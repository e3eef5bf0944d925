pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Asks before anything is removed.
Sheet {
    id: sheet

    required property AppState appState

    onDismissed: appState.showConfirmation = false

    panel: SheetPanel {
        id: panel

        name: title.text
        buttons: [
            SecondaryButton {
                focus: true
                text: qsTr("Cancel")
                onClicked: sheet.dismissed()
            },
            PrimaryButton {
                text: qsTr("Delete %1 permanently").arg(confirmation.totalText)
                isDestructive: true
                minimumWidth: 220
                available: !confirmation.needsAcknowledgement || acknowledgement.checked
                onClicked: sheet.appState.performClean()
            }
        ]

        ConfirmationModel {
            id: confirmation

            appState: sheet.appState
        }

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
            width: parent.width
            model: confirmation
        }

        NoticeBox {
            visible: warnings.count > 0
            width: parent.width

            Column {
                width: parent.width
                spacing: Theme.spacingSmall

                Repeater {
                    id: warnings

                    model: confirmation.warnings

                    SymbolText {
                        required property string modelData

                        width: parent?.width ?? 0
                        symbol: "exclamationmark.triangle.fill"
                        text: modelData
                    }
                }
            }
        }

        Acknowledgement {
            id: acknowledgement

            visible: confirmation.needsAcknowledgement
            width: parent.width
            text: confirmation.acknowledgementText
            plainText: confirmation.plainAcknowledgementText
        }
    }
}
