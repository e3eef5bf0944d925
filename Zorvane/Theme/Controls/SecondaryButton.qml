import QtQuick
import Zorvane

/// A button beside the main one, with an optional symbol before its text.
BaseButton {
    id: button

    property string symbol: ""
    property real cornerRadius: Theme.radiusMedium
    property bool small: false

    leftPadding: small ? 12 : 18
    rightPadding: leftPadding
    topPadding: small ? 5 : 10
    bottomPadding: topPadding
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    spacing: small ? 5 : 7
    font: small ? Theme.captionMedium : Theme.bodyMedium

    contentItem: LabelRow {
        text: button.text
        symbol: button.symbol
        font: button.font
        color: Theme.textPrimary
        spacing: button.spacing
    }

    background: RoundedBox {
        readonly property real fill: button.down ? 0.1 : button.hovered ? 0.085 : 0.06

        cornerRadius: button.cornerRadius
        color: Theme.white(fill)
        outlineColor: Theme.white(0.13)

        Behavior on color {
            enabled: Theme.animated
            ColorAnimation {
                duration: Theme.pressDuration
                easing.type: Easing.OutQuad
            }
        }

        FocusRing {
            shown: button.visualFocus
            elementRadius: button.cornerRadius
        }
    }
}
