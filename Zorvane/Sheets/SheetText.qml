import QtQuick
import Zorvane

/// A text of a sheet; it wraps, and nothing in it is taken for markup.
Text {
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    font: Theme.callout
    color: Theme.textPrimary
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
