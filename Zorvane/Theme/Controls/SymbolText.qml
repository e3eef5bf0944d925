import QtQuick
import Zorvane

/// A text beside a symbol, which is centred on the first line and may be higher than it.
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
    /// The x coordinate of the text.
    readonly property real indent: symbolWidth + spacing
    readonly property real symbolHeight: icon.height

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

    Label {
        id: label

        x: line.indent
        width: line.width - x
        text: line.text
        font: line.font
        color: line.color
    }
}
