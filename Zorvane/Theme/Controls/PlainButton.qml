import QtQuick
import Zorvane

/// A button without a frame: a text, a symbol or both.
BaseButton {
    id: button

    property string symbol: ""
    property color color: Theme.textSecondary

    padding: 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    spacing: 4
    font: Theme.caption

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }

    contentItem: LabelRow {
        text: button.text
        symbol: button.symbol
        font: button.font
        color: button.color
        spacing: button.spacing
        opacity: button.down ? 0.7 : 1
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.margins: -4
            radius: 6
            color: "white"
            opacity: button.hovered ? 0.06 : 0
        }

        FocusRing {
            shown: button.visualFocus
            elementRadius: 4
        }
    }
}
