import QtQuick
import Zorvane

/// The button of the main action. A destructive one ignores Return, which is too easily pressed
/// without looking.
BaseButton {
    id: button

    property bool isDestructive: false
    /// Shows a spinner instead of the text, and disables the button.
    property bool busy: false
    property real minimumWidth: 0
    /// Without the padding.
    property real minimumTextWidth: 0

    property color fill: isDestructive ? Theme.withOpacity(Theme.danger, down ? 0.75 : 0.9)
                                       : down ? Theme.primaryDeep : Theme.primaryLight

    Behavior on fill {
        enabled: Theme.animated
        ColorAnimation {
            duration: Theme.pressDuration
            easing.type: Easing.OutQuad
        }
    }

    leftPadding: 26
    rightPadding: 26
    topPadding: 11
    bottomPadding: 11
    implicitWidth: Math.max(minimumWidth, leftPadding + rightPadding + Math.max(implicitContentWidth, minimumTextWidth))
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    enabled: available && !busy
    pressedByReturn: !isDestructive
    font: Theme.bodySemibold

    contentItem: Text {
        text: button.text
        textFormat: Text.PlainText
        font: button.font
        color: button.busy ? "transparent" : "white"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    background: Item {
        SoftShadow {
            anchors.fill: parent
            anchors.margins: -margin
            color: Theme.withOpacity(Theme.primary, 0.45)
            radius: 11
            offsetY: 4
            cornerRadius: Theme.radiusMedium
        }

        RoundedBox {
            anchors.fill: parent
            cornerRadius: Theme.radiusMedium
            color: button.fill
            endColor: button.isDestructive ? button.fill : Theme.primaryDeep
        }

        RoundedBox {
            anchors.fill: parent
            cornerRadius: Theme.radiusMedium
            color: "white"
            opacity: button.hovered && !button.down ? 0.09 : 0

            Behavior on opacity {
                enabled: Theme.animated
                NumberAnimation {
                    duration: Theme.pressDuration
                    easing.type: Easing.OutQuad
                }
            }
        }

        FocusRing {
            shown: button.visualFocus
            elementRadius: Theme.radiusMedium
        }
    }

    Spinner {
        anchors.centerIn: parent
        visible: button.busy
        color: "white"
    }
}
