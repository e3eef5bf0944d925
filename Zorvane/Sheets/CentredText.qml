import QtQuick
import Zorvane

/// A text in the middle of a sheet's column.
Label {
    width: parent?.width ?? 0
    horizontalAlignment: Text.AlignHCenter
}
