import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A tinted box around its content.
T.Pane {
    id: box

    property color color: Theme.warning

    padding: 12
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    background: RoundedBox {
        cornerRadius: Theme.radiusMedium
        color: Theme.withOpacity(box.color, 0.08)
        outlineColor: Theme.withOpacity(box.color, 0.22)
    }
}
