import QtQuick
import Zorvane

/// One row's part of a glass card that is drawn by several rows, one below the other.
Item {
    id: slice

    required property bool isFirst
    required property bool isLast
    property bool selected: false
    /// How much white lies over the fill, for rows that answer to the pointer.
    property real highlight: 0

    RoundedBox {
        anchors.fill: parent
        continuesAbove: !slice.isFirst
        continuesBelow: !slice.isLast
        cornerRadius: Theme.radiusLarge
        color: slice.selected ? Theme.glassSelectedFill : Theme.glassFill
        outlineColor: slice.selected ? Theme.glassSelectedBorder : Theme.glassBorder
    }

    RoundedBox {
        anchors.fill: parent
        visible: opacity > 0
        continuesAbove: !slice.isFirst
        continuesBelow: !slice.isLast
        cornerRadius: Theme.radiusLarge
        color: "white"
        opacity: slice.highlight

        Behavior on opacity {
            enabled: Theme.animated
            NumberAnimation { duration: Theme.pressDuration }
        }
    }
}
