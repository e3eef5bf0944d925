import QtQuick
import Zorvane

/// The background of a glass card.
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

    // The border of the rectangle above would replace its fill instead of lying over it.
    Rectangle {
        visible: !surface.painted
        anchors.fill: parent
        radius: surface.cornerRadius
        color: "transparent"
        border.width: 1
        border.color: surface.outline
    }
}
