pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Describes the program.
Sheet {
    id: sheet

    required property string version

    panel: SheetPanel {
        name: qsTr("About Zorvane")
        buttons: [
            SecondaryButton {
                focus: true
                text: qsTr("Close")
                onClicked: sheet.dismissed()
            }
        ]

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            source: "qrc:/Zorvane/Resources/zorvane.svg"
            sourceSize.width: 192
            sourceSize.height: 192
            width: 96
            height: 96
            Accessible.ignored: true
        }

        CentredText {
            text: "Zorvane"
            font: Theme.title
        }

        CentredText {
            text: qsTr("Version %1").arg(sheet.version)
            color: Theme.textSecondary
        }

        CentredText {
            text: qsTr("Shows what caches, logs and leftovers hold, and removes what you choose. Free software under the Apache License, Version 2.0.")
            color: Theme.textSecondary
        }
    }
}
