import QtQuick
import Zorvane

/// A text centred in the column of a sheet.
Label {
    width: parent?.width ?? 0
    horizontalAlignment: Text.AlignHCenter
}
