import QtQuick
import Zorvane

/// A text behind a symbol, which stands in the middle of its first line.
Item {
    id: line

    required property string symbol
    property color symbolColor: Theme.warning
    property real symbolSize: 11
    property real symbolWidth: icon.implicitWidth
    property real spacing: Theme.spacingSmall
    required property string text
    property font font: Theme.callout
    property color color: Theme.textPrimary
    /// Where the text begins.
    readonly property real indent: symbolWidth + spacing

    implicitWidth: indent + label.implicitWidth
    implicitHeight: label.implicitHeight

    FontMetrics {
        id: metrics

        font: line.font
    }

    Symbol {
        id: icon

        x: Math.round((line.symbolWidth - width) / 2)
        y: Math.round((metrics.height - height) / 2)
        name: line.symbol
        size: line.symbolSize
        color: line.symbolColor
    }

    SheetText {
        id: label

        x: line.indent
        width: line.width - x
        text: line.text
        font: line.font
        color: line.color
    }
}
