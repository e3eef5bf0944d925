import QtQuick
import Zorvane

/// One place of a rolling figure. A new character pushes the old one out upwards.
Item {
    id: place

    required property string character
    required property font font
    required property color color

    property string shown: ""
    property string leaving: ""
    property real progress: 1
    property bool complete: false

    implicitWidth: previous.implicitWidth + (current.implicitWidth - previous.implicitWidth) * progress
    implicitHeight: current.implicitHeight
    clip: progress < 1

    onCharacterChanged: {
        leaving = shown;
        shown = character;
        if (Theme.animated && complete)
            roll.restart();
    }
    Component.onCompleted: {
        shown = character;
        complete = true;
    }

    NumberAnimation {
        id: roll

        target: place
        property: "progress"
        from: 0
        to: 1
        duration: Theme.rollDuration
        easing.type: Easing.OutCubic
    }

    Text {
        id: previous

        anchors.horizontalCenter: parent.horizontalCenter
        y: -place.progress * height
        visible: place.progress < 1
        opacity: 1 - place.progress
        text: place.leaving
        textFormat: Text.PlainText
        font: place.font
        color: place.color
        Accessible.ignored: true
    }

    Text {
        id: current

        anchors.horizontalCenter: parent.horizontalCenter
        y: (1 - place.progress) * height
        opacity: place.progress
        text: place.shown
        textFormat: Text.PlainText
        font: place.font
        color: place.color
        Accessible.ignored: true
    }
}
