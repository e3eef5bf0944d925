import QtQuick
import Zorvane

/// The strip of a glass card that a single row draws.
Item {
    id: slice

    required property bool isFirst
    required property bool isLast
    property bool selected: false
    /// The opacity of white over the fill, for rows that respond to the pointer.
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
