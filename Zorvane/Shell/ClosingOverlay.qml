import QtQuick
import Zorvane

/// Covers the window while it finishes what it has in hand, and takes its mouse and keyboard.
FocusScope {
    id: overlay

    Keys.onPressed: event => { event.accepted = true; }
    onVisibleChanged: {
        if (visible)
            forceActiveFocus();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.black(0.6)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => { wheel.accepted = true; }
    }

    // Keeps what lies below from showing through the glass.
    RoundedBox {
        anchors.fill: card
        cornerRadius: card.cornerRadius
        color: Theme.background
    }

    GlassCard {
        id: card

        anchors.centerIn: parent
        padding: 24
        cornerRadius: 14

        Row {
            spacing: Theme.spacingMedium

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Finishing the item in hand, then closing…")
                textFormat: Text.PlainText
                font: Theme.bodyMedium
                color: Theme.textPrimary
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
