import QtQuick
import Zorvane

/// The base of all rows of the results: their strip of the card, and the fade when their category
/// opens.
KeyboardRow {
    id: row

    default property alias content: body.data
    property alias highlight: slice.highlight

    required property bool isLast
    required property bool hasSelectedLook
    property bool isFirst: false
    property real topGap: 0
    required property real contentHeight

    readonly property bool hovered: pointer.hovered && pointer.point.position.y >= topGap

    width: (ListView.view as ResultsList)?.rowWidth ?? 0
    height: topGap + contentHeight
    ListView.onAdd: {
        if (Theme.animated)
            opening.restart();
    }
    ListView.onPooled: {
        opening.stop();
        body.opacity = 1;
    }

    HoverHandler {
        id: pointer
    }

    NumberAnimation {
        id: opening

        target: body
        property: "opacity"
        from: 0
        to: 1
        duration: 2 * Theme.shortDuration
        easing.type: Easing.OutCubic
    }

    CardSlice {
        id: slice

        y: row.topGap
        width: parent.width
        height: row.contentHeight
        isFirst: row.isFirst
        isLast: row.isLast
        selected: row.hasSelectedLook
    }

    Item {
        id: body

        y: row.topGap
        width: parent.width
        height: row.contentHeight
    }
}
