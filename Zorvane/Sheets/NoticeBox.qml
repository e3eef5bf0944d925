import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A box tinted in the colour of what it tells.
T.Pane {
    id: box

    property color color: Theme.warning

    padding: 12
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusMedium
            color: Theme.withOpacity(box.color, 0.08)
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusMedium
            color: "transparent"
            border.width: 1
            border.color: Theme.withOpacity(box.color, 0.22)
        }
    }
}
