import QtQuick
import Zorvane

/// An underlined text that leads to another place.
PlainButton {
    color: Theme.primaryLight
    font.family: Theme.callout.family
    font.pixelSize: Theme.callout.pixelSize
    font.underline: true
}
