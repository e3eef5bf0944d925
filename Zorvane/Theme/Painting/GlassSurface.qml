import QtQuick
import Zorvane

/// The look of a glass card, without content: for the background of other elements.
Item {
    id: surface

    property real cornerRadius: Theme.radiusLarge
    property bool selected: false

    readonly property color fill: selected ? Theme.glassSelectedFill : Theme.glassFill
    readonly property color outline: selected ? Theme.glassSelectedBorder : Theme.glassBorder
    /// A very tall card would need a texture of its size.
    readonly property bool painted: height <= 1600

    RoundedBox {
        visible: surface.painted
        anchors.fill: parent
        cornerRadius: surface.cornerRadius
        color: surface.fill
        outlineColor: surface.outline
    }

    Rectangle {
        visible: !surface.painted
        anchors.fill: parent
        radius: surface.cornerRadius
        color: surface.fill
    }

    // An outline of its own lies over the fill; the border of a rectangle would replace it.
    Rectangle {
        visible: !surface.painted
        anchors.fill: parent
        radius: surface.cornerRadius
        color: "transparent"
        border.width: 1
        border.color: surface.outline
    }
}
