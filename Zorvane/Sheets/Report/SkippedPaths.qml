pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zorvane

/// The paths of all skipped items.
ListView {
    id: list

    implicitHeight: Math.min(contentHeight, 110)
    spacing: 2
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    // As in the list of results.
    cacheBuffer: 0
    activeFocusOnTab: true
    keyNavigationEnabled: true
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Details")

    T.ScrollBar.vertical: ThinScrollBar {
        policy: T.ScrollBar.AlwaysOn
    }

    delegate: Text {
        id: row

        required property string path

        width: list.width - 14
        text: path
        textFormat: Text.PlainText
        font: Theme.monospacedCaption
        color: activeFocus ? Theme.textPrimary : Theme.textTertiary
        elide: Text.ElideMiddle
        maximumLineCount: 1
        // The list only stops painting what it keeps for later.
        ListView.onPooled: visible = false
        ListView.onReused: visible = true
        Accessible.role: Accessible.ListItem
        Accessible.name: path

        HoverHelp {
            text: row.path
        }
    }
}
