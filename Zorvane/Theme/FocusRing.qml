import QtQuick
import Zorvane

/// Shows where the keyboard is, around the element that it fills.
Rectangle {
    id: ring

    required property bool shown
    property real cornerRadius: Theme.radiusMedium
    property real gap: 2

    anchors.fill: parent
    anchors.margins: -gap - border.width
    radius: Math.min(cornerRadius + gap + border.width, height / 2)
    color: "transparent"
    border.width: 2
    border.color: Theme.primaryLight
    visible: shown
}
