import QtQuick
import Zorvane

/// The look of a glass card, without content: for the background of other elements.
Item {
    id: surface

    property real cornerRadius: Theme.radiusLarge
    property bool selected: false

    Rectangle {
        anchors.fill: parent
        radius: surface.cornerRadius
        color: surface.selected ? Theme.glassSelectedFill : Theme.glassFill
    }

    // An outline of its own lies over the fill; the border of a rectangle would replace it.
    Rectangle {
        anchors.fill: parent
        radius: surface.cornerRadius
        color: "transparent"
        border.width: 1
        border.color: surface.selected ? Theme.glassSelectedBorder : Theme.glassBorder
    }
}
