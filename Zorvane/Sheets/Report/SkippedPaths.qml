pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zorvane

/// The paths of the skipped items.
KeyboardList {
    id: list

    implicitHeight: Math.min(contentHeight, 110)
    spacing: 2
    rowHeight: 16
    reuseItems: true
    Accessible.name: qsTr("Details")

    T.ScrollBar.vertical: ThinScrollBar {
        policy: T.ScrollBar.AlwaysOn
    }

    delegate: KeyboardRow {
        id: row

        required property string path

        width: list.width - 14
        implicitHeight: text.implicitHeight
        focusTarget: row
        activeFocusOnTab: isTabStop
        Accessible.role: Accessible.ListItem
        Accessible.name: path

        Label {
            id: text

            width: parent.width
            text: row.path
            font: Theme.monospacedCaption
            color: row.activeFocus ? Theme.textPrimary : Theme.textTertiary
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }

        HoverHelp {
            text: row.path
        }
    }
}
