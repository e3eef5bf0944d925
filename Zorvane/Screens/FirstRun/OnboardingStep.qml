import QtQuick
import Zorvane

/// A numbered instruction. Text between double asterisks is bold.
Item {
    id: step

    required property int number
    required property string instruction
    required property real maximumWidth

    readonly property real textIndent: disc.width + Theme.spacingMedium

    implicitWidth: textIndent + label.width
    implicitHeight: Math.max(disc.height, label.height)

    RoundedBox {
        id: disc

        width: 24
        height: 24
        cornerRadius: 12
        color: Theme.withOpacity(Theme.primary, 0.15)

        Label {
            anchors.centerIn: parent
            text: step.number
            font: Theme.calloutBold
            color: Theme.primary
            Accessible.ignored: true
        }
    }

    Text {
        id: label

        x: step.textIndent
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, step.maximumWidth - step.textIndent)
        text: step.instruction
        textFormat: Text.MarkdownText
        font: Theme.body
        color: Theme.textPrimary
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: step.instruction.replace(/\*\*/g, "")
    }
}
