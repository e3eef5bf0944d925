pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Zorvane

/// The downloaded entries of the cloud drive, and those that could not be measured.
Item {
    id: frame

    required property ICloudModel model
    /// Two rows and a half are always in sight.
    property real maximumHeight: 220

    implicitHeight: list.height
    visible: list.count > 0

    KeyboardList {
        id: list

        width: parent.width
        height: Math.min(contentHeight, 220, Math.max(115, frame.maximumHeight))
        model: frame.model
        spacing: 6
        Accessible.name: frame.model.driveTitle
        // Rows that are measured later come before others; the keyboard enters at the top.
        onCountChanged: {
            if (!activeFocus)
                currentIndex = 0;
        }

        T.ScrollBar.vertical: ThinScrollBar {
            parent: frame
            x: frame.width + 6
            height: list.height
        }

        delegate: ICloudItemRow {
            width: list.width
            onToggled: frame.model.setSelected(index, !isSelected)
            onFetchRequested: frame.model.fetch(index)
        }
    }
}
