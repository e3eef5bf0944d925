import QtQuick
import Zorvane

/// An item of an expanded category. The height is fixed, since there may be a hundred thousand.
ResultsRow {
    id: row

    required property string path
    required property string sizeText
    required property string obstacleText
    required property string reclaimText
    required property string reclaimReason
    required property bool isSelected

    readonly property real lineHeight: 30

    signal selectionToggled(isSelected: bool)

    contentHeight: isLast ? lineHeight + Theme.spacingSmall : lineHeight
    focusTarget: box

    RoundedBox {
        visible: row.hovered
        x: 36
        width: parent.width - x - 8
        height: row.lineHeight
        cornerRadius: 8
        color: Theme.white(0.045)
    }

    SelectionBox {
        id: box

        x: 44
        y: (row.lineHeight - height) / 2
        focus: true
        focusPolicy: row.controlFocusPolicy
        checked: row.isSelected
        accessibleName: row.obstacleText === "" ? row.path : qsTr("%2: %1").arg(row.obstacleText).arg(row.path)
        description: row.reclaimText
        onToggled: row.selectionToggled(!row.isSelected)
    }

    Label {
        id: pathText

        x: 72
        width: Math.min(implicitWidth, lock.x - x - 6, gain.x - x - Theme.spacingSmall)
        height: row.lineHeight
        verticalAlignment: Text.AlignVCenter
        text: row.path
        font: Theme.fileFont(12, Font.Normal)
        color: Theme.textSecondary
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }

    Symbol {
        id: lock

        readonly property real end: size.x - Theme.spacingMedium

        visible: row.obstacleText !== ""
        x: visible ? end - width : end + 6
        y: (row.lineHeight - height) / 2
        name: "lock.fill"
        size: 10
        color: Theme.warning
    }

    Label {
        id: gain

        visible: row.reclaimText !== ""
        x: size.x - Theme.spacingMedium - (visible ? width : 0)
        height: row.lineHeight
        verticalAlignment: Text.AlignVCenter
        text: row.reclaimText
        wrapMode: Text.NoWrap
        font: Theme.caption
        color: Theme.textSecondary
        Accessible.ignored: true
    }

    Label {
        id: size

        // Aligned with the size in the header.
        x: row.width - 38 - width
        width: Math.max(implicitWidth, 64)
        height: row.lineHeight
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        text: row.sizeText
        wrapMode: Text.NoWrap
        font: Theme.numberFont(11, Font.Medium)
        color: Theme.textSecondary
    }

    HoverHelp {
        parent: row
        focusItem: box
        text: {
            if (row.reclaimReason !== "")
                return row.path + "\n" + row.reclaimReason;
            return row.obstacleText !== "" ? box.accessibleName : pathText.truncated ? row.path : "";
        }
    }
}
