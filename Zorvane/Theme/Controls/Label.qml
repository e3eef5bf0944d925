import QtQuick
import Zorvane

/// Plain text. It wraps unless it is elided.
Text {
    textFormat: Text.PlainText
    wrapMode: elide === Text.ElideNone ? Text.Wrap : Text.NoWrap
    font: Theme.callout
    color: Theme.textPrimary
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
