import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A slim scroll bar without a track.
T.ScrollBar {
    id: bar

    padding: 2
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    minimumSize: 0.08
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    hoverEnabled: true

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: Theme.white(bar.pressed ? 0.45 : bar.hovered ? 0.35 : 0.2)

        Behavior on color {
            enabled: Theme.animated
            ColorAnimation { duration: Theme.shortDuration }
        }
    }
}
