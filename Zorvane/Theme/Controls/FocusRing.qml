import QtQuick
import Zorvane

/// Shows where the keyboard is, around the element that it fills.
RoundedBox {
    id: ring

    required property bool shown
    /// Of the element.
    property real elementRadius: Theme.radiusMedium
    property real gap: 2

    readonly property real thickness: 2

    anchors.fill: parent
    anchors.margins: -gap - thickness
    cornerRadius: elementRadius + gap + thickness
    outlineWidth: thickness
    outlineColor: Theme.primaryLight
    visible: shown
}
