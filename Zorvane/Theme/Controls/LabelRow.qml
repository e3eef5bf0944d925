import QtQuick
import Zorvane

/// The symbol and the text of a button, centred.
Item {
    id: label

    required property string text
    required property string symbol
    required property font font
    required property color color
    property real spacing: 6

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: label.spacing

        Symbol {
            visible: label.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            name: label.symbol
            size: label.font.pixelSize
            color: label.color
        }

        Text {
            visible: label.text !== ""
            anchors.verticalCenter: parent.verticalCenter
            text: label.text
            textFormat: Text.PlainText
            font: label.font
            color: label.color
            Accessible.ignored: true
        }
    }
}
