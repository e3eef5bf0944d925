import QtQuick
import Zorvane

/// A symbol and a short text beside it, which wraps where the width ends.
Item {
    id: notice

    required property string symbol
    required property string text
    property color symbolColor: color
    property color color: Theme.textPrimary
    property font font: Theme.callout
    property real maximumWidth: 520

    readonly property real textIndent: mark.width + Theme.spacingSmall

    implicitWidth: textIndent + label.width
    implicitHeight: Math.max(mark.height, label.height)

    Symbol {
        id: mark

        // In the middle of the text's first line.
        y: Math.round((firstLine.height - height) / 2)
        name: notice.symbol
        size: notice.font.pixelSize + 1
        color: notice.symbolColor
    }

    FontMetrics {
        id: firstLine

        font: notice.font
    }

    ScreenText {
        id: label

        x: notice.textIndent
        width: Math.min(implicitWidth, notice.maximumWidth - notice.textIndent)
        text: notice.text
        font: notice.font
        color: notice.color
        wrapMode: Text.Wrap
    }
}
