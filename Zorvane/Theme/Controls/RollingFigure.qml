pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// A figure whose digits roll to their new values when the text changes. Its places are counted
/// from the right, so that the unit stays in place when the figure grows.
Item {
    id: figure

    required property string text
    property font font: Theme.numberFont(44, Font.Bold)
    property color color: Theme.textPrimary

    /// More than the longest figure has.
    readonly property int places: 24

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: row

        anchors.centerIn: parent

        Repeater {
            model: figure.places

            RollingCharacter {
                required property int index

                character: figure.text.charAt(figure.text.length - figure.places + index)
                font: figure.font
                color: figure.color
            }
        }
    }
}
