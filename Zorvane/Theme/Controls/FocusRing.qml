import QtQuick
import Zorvane

/// A ring around the element that it fills, for the one that has the keyboard focus.
RoundedBox {
    id: ring

    required property bool shown
    /// The corner radius of the element.
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
