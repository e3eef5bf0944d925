import QtQuick
import Zorvane

/// Covers everything below it while the user has to wait, and takes the mouse and the keyboard.
FocusScope {
    id: overlay

    required property string text
    property real darkness: 0.6
    /// Whether a large spinner stands above the text, rather than a small one beside it.
    property bool isLarge: false

    Keys.onPressed: event => { event.accepted = true; }
    onVisibleChanged: {
        if (visible)
            forceActiveFocus();
    }

    Dimming {
        anchors.fill: parent
        darkness: overlay.darkness
    }

    // Keeps the screen below from showing through the glass.
    RoundedBox {
        anchors.fill: card
        cornerRadius: card.cornerRadius
        color: Theme.background
    }

    GlassCard {
        id: card

        anchors.centerIn: parent
        padding: 24

        Item {
            implicitWidth: overlay.isLarge ? Math.max(spinner.width, label.width) : label.x + label.width
            implicitHeight: overlay.isLarge ? label.y + label.height : Math.max(spinner.height, label.height)

            Spinner {
                id: spinner

                anchors.horizontalCenter: overlay.isLarge ? parent.horizontalCenter : undefined
                anchors.verticalCenter: overlay.isLarge ? undefined : parent.verticalCenter
                controlSize: overlay.isLarge ? Spinner.Large : Spinner.Small
                Accessible.name: overlay.text
            }

            Label {
                id: label

                x: spinner.width + Theme.spacingMedium
                y: spinner.height + 14
                anchors.horizontalCenter: overlay.isLarge ? parent.horizontalCenter : undefined
                anchors.verticalCenter: overlay.isLarge ? undefined : parent.verticalCenter
                text: overlay.text
                font: Theme.bodyMedium
            }
        }
    }
}
