import QtQuick
import Zorvane

/// The name of the application and a greeting. The right end is reserved for the window's buttons.
Item {
    id: bar

    required property string userName
    property real rightReserve: 200

    implicitHeight: 54

    Row {
        id: row

        x: 20
        anchors.verticalCenter: parent.verticalCenter
        spacing: 9

        Image {
            anchors.verticalCenter: parent.verticalCenter
            width: 30
            height: 30
            source: "../Resources/zorvane.svg"
            sourceSize.width: 30
            sourceSize.height: 30
            Accessible.ignored: true
        }

        Label {
            id: product

            anchors.verticalCenter: parent.verticalCenter
            text: "Zorvane"
            font: Theme.textFont(14, Font.Bold)
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, bar.width - bar.rightReserve - product.width - 68)
            text: qsTr("Welcome, %1").arg(bar.userName)
            font: Theme.bodyBold
            elide: Text.ElideRight
        }
    }
}
