import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A button of the title bar.
T.Button {
    id: button

    required property string name
    required property string symbol
    property color hoverColor: "white"

    implicitWidth: 28
    implicitHeight: 28
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: button.clicked()
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) button.clicked(); }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) button.clicked(); }

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
