import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A button without a frame: a text, a symbol or both.
T.Button {
    id: button

    property string symbol: ""
    property color color: Theme.textSecondary

    padding: 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    spacing: 4
    font: Theme.caption
    opacity: enabled ? 1 : 0.5
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.Button
    Accessible.name: text
    // Qt 6.4 does not tell assistive tools that a control is disabled.
    Accessible.description: enabled ? "" : qsTr("Not available")
    Accessible.onPressAction: button.clicked()
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) button.clicked(); }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) button.clicked(); }

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
