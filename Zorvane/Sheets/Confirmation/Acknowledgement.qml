import QtQuick
import Zorvane

/// The check box by which the user confirms having reviewed the selection.
Item {
    id: acknowledgement

    property bool checked: false
    /// Styled text.
    required property string text
    required property string plainText

    implicitWidth: label.x + label.implicitWidth
    implicitHeight: Math.max(box.height, label.y + label.height)

    SelectionBox {
        id: box

        accessibleName: acknowledgement.plainText
        checked: acknowledgement.checked
        onToggled: acknowledgement.checked = !acknowledgement.checked
    }

    Text {
        id: label

        x: box.width + Theme.spacingSmall
        y: Math.max(0, (box.height - metrics.height) / 2)
        width: acknowledgement.width - x
        text: acknowledgement.text
        textFormat: Text.StyledText
        wrapMode: Text.Wrap
        font: Theme.callout
        color: Theme.textPrimary
        Accessible.ignored: true

        TapHandler {
            onTapped: acknowledgement.checked = !acknowledgement.checked
        }

        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }

    FontMetrics {
        id: metrics

        font: label.font
    }
}
