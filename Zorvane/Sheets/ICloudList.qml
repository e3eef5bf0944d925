pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zorvane

/// The entries of the cloud drive that are downloaded.
ListView {
    id: list

    required property ICloudModel entries

    model: entries
    implicitHeight: Math.min(contentHeight, 220)
    spacing: 6
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    Accessible.role: Accessible.List
    Accessible.name: qsTr("iCloud Drive")

    T.ScrollBar.vertical: ThinScrollBar {
        parent: list.parent
        x: list.x + list.width + 4
        y: list.y
        height: list.height
    }

    delegate: ICloudItemRow {
        id: row

        width: list.width
        onToggled: list.entries.setSelected(index, !isSelected)
        onActiveFocusChanged: {
            if (activeFocus)
                list.positionViewAtIndex(index, ListView.Contain);
        }
    }
}
