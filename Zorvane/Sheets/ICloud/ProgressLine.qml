import QtQuick
import Zorvane

/// A spinner and the progress of some work.
Item {
    id: line

    required property string text
    property font font: Theme.caption

    readonly property real indent: spinner.width + Theme.spacingSmall

    implicitWidth: indent + label.implicitWidth
    implicitHeight: Math.max(spinner.height, label.height)

    Spinner {
        id: spinner

        anchors.verticalCenter: parent.verticalCenter
        Accessible.ignored: true
    }

    Label {
        id: label

        x: line.indent
        anchors.verticalCenter: parent.verticalCenter
        width: line.width - x
        text: line.text
        font: line.font
        color: Theme.textTertiary
    }
}
