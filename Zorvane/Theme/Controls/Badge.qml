import QtQuick
import Zorvane

/// A short text in a capsule of the same colour.
Item {
    id: badge

    required property string text
    property color color: Theme.catOther
    property font font: Theme.badge

    implicitWidth: label.implicitWidth + 16
    implicitHeight: label.implicitHeight + 5
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    RoundedBox {
        anchors.fill: parent
        cornerRadius: height / 2
        color: Theme.withOpacity(badge.color, 0.16)
        outlineColor: Theme.withOpacity(badge.color, 0.25)
    }

    Text {
        id: label

        anchors.centerIn: parent
        text: badge.text
        textFormat: Text.PlainText
        font: badge.font
        color: badge.color
        Accessible.ignored: true
    }
}
