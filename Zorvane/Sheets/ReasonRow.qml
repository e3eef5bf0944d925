import QtQuick
import Zorvane

/// A symbol, a title and, below it, an explanation.
Column {
    id: reason

    property alias symbol: title.symbol
    property alias symbolColor: title.symbolColor
    property alias symbolSize: title.symbolSize
    property alias symbolWidth: title.symbolWidth
    property alias title: title.text
    property alias titleFont: title.font
    property alias detail: detail.text
    property alias detailColor: detail.color

    spacing: 2

    SymbolText {
        id: title

        width: parent.width
        symbol: ""
        text: ""
        font: Theme.calloutSemibold
    }

    Label {
        id: detail

        x: title.indent
        width: parent.width - x
        font: Theme.caption
        color: Theme.textSecondary
    }
}
