import QtQuick
import Zorvane

/// A plain text. It wraps unless it is elided, and assistive tools read it as it stands.
Text {
    textFormat: Text.PlainText
    wrapMode: elide === Text.ElideNone ? Text.Wrap : Text.NoWrap
    font: Theme.callout
    color: Theme.textPrimary
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
