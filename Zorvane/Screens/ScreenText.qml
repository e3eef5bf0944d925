import QtQuick
import Zorvane

/// A text that is read aloud as it stands.
Text {
    textFormat: Text.PlainText
    font: Theme.body
    color: Theme.textPrimary
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
