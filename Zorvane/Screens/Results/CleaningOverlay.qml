import QtQuick
import Zorvane

/// Covers the screen while a clean runs, and takes its mouse and keyboard.
FocusScope {
    id: overlay

    readonly property string text: qsTr("Cleaning…")

    Keys.onPressed: event => { event.accepted = true; }
    onVisibleChanged: {
        if (visible)
            forceActiveFocus();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.black(0.4)
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
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

        contentItem: Column {
            spacing: 14

            Spinner {
                anchors.horizontalCenter: parent.horizontalCenter
                controlSize: Spinner.Large
                Accessible.name: overlay.text
            }

            ScreenText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: overlay.text
                font: Theme.bodyMedium
            }
        }
    }
}
