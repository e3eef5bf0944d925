import QtQuick
import Zorvane

/// One row's part of a glass card that is drawn by several rows, one below the other.
Item {
    id: slice

    property bool isFirst: false
    property bool isLast: false
    property bool selected: false
    /// Lies over the fill, for rows that answer to the pointer.
    property color highlight: "transparent"

    readonly property real hiddenTop: isFirst ? 0 : Theme.radiusLarge + 1
    readonly property real hiddenBottom: isLast ? 0 : Theme.radiusLarge + 1

    clip: !(isFirst && isLast)

    GlassSurface {
        id: surface

        y: -slice.hiddenTop
        width: parent.width
        height: parent.height + slice.hiddenTop + slice.hiddenBottom
        cornerRadius: Theme.radiusLarge
        selected: slice.selected
    }

    Rectangle {
        anchors.fill: surface
        radius: surface.cornerRadius
        color: slice.highlight

        Behavior on color {
            enabled: Theme.animated
            ColorAnimation { duration: Theme.pressDuration }
        }
    }
}
