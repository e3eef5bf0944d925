import QtQuick
import Zorvane

/// Covers everything below it during work that the user has to wait for, and takes the mouse and
/// the keyboard.
FocusScope {
    id: overlay

    required property string text
    property alias darkness: dimming.darkness
    /// Whether a large spinner stands above the text, rather than a small one beside it.
    property bool isLarge: false

    Keys.onPressed: event => { event.accepted = true; }
    onVisibleChanged: {
        if (visible)
            forceActiveFocus();
    }

    Dimming {
        id: dimming

        anchors.fill: parent
        darkness: 0.6
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

        contentItem: Grid {
            columns: overlay.isLarge ? 1 : 2
            spacing: overlay.isLarge ? 14 : Theme.spacingMedium
            horizontalItemAlignment: Grid.AlignHCenter
            verticalItemAlignment: Grid.AlignVCenter

            Spinner {
                controlSize: overlay.isLarge ? Spinner.Large : Spinner.Small
                Accessible.name: overlay.text
            }

            Label {
                text: overlay.text
                font: Theme.bodyMedium
            }
        }
    }
}
