import QtQuick
import Zorvane

/// A button of the title bar.
BaseButton {
    id: button

    required property string symbol
    property color hoverColor: "white"

    implicitWidth: 28
    implicitHeight: 28
    focusPolicy: Qt.TabFocus

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbol
            size: 12
            color: button.hovered ? Theme.textPrimary : Theme.textSecondary
        }
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: 8
            color: button.hoverColor
            opacity: button.down ? 0.24 : button.hovered ? 0.14 : 0
        }

        FocusRing {
            shown: button.visualFocus
            elementRadius: 8
        }
    }
}
