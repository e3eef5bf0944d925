import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A tool tip of its parent, shown while the pointer is over it or the keyboard has moved to it.
Item {
    id: help

    required property string text
    /// A control that was focused by a click does not count.
    property Item focusItem: parent

    readonly property bool hasKeyboard: (focusItem as T.Control)?.visualFocus ?? focusItem?.activeFocus ?? false
    /// The tool tip follows after a delay.
    readonly property bool isWanted: text !== "" && (pointer.hovered || hasKeyboard)

    anchors.fill: parent

    HoverHandler {
        id: pointer
    }

    T.ToolTip {
        id: tip

        x: Math.round((help.width - width) / 2)
        y: -height - 6
        implicitWidth: Math.min(implicitContentWidth, 300) + leftPadding + rightPadding
        implicitHeight: implicitContentHeight + topPadding + bottomPadding
        horizontalPadding: 10
        verticalPadding: 6
        margins: 8
        delay: 400
        text: help.text
        visible: help.isWanted
        closePolicy: T.Popup.CloseOnEscape

        contentItem: Text {
            text: tip.text
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.textPrimary
            wrapMode: Text.Wrap
        }

        background: Rectangle {
            radius: 7
            color: Qt.tint(Theme.background, Theme.white(0.12))
            border.width: 1
            border.color: Theme.white(0.14)
        }
    }
}
