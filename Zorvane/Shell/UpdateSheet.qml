pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Checks for updates.
Sheet {
    id: sheet

    required property UpdaterController updater

    shown: updater.isShown
    onDismissed: updater.dismiss()

    panel: SheetPanel {
        name: qsTr("Software update")
        buttons: [
            SecondaryButton {
                focus: true
                text: qsTr("Close")
                onClicked: sheet.dismissed()
            },
            PrimaryButton {
                visible: sheet.updater.offersUpdate
                text: qsTr("Open download page")
                onClicked: sheet.updater.openDownload()
            }
        ]

        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: sheet.updater.isChecking
        }

        CentredText {
            text: sheet.updater.message
            font: Theme.headline
        }

        Label {
            visible: sheet.updater.offersUpdate
            width: parent.width
            text: sheet.updater.notes
            color: Theme.textSecondary
        }
    }
}
