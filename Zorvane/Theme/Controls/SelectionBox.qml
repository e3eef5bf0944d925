import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A check box without a label. It never changes `checked` itself; the owner does, when `toggled` is
/// emitted.
T.CheckBox {
    id: box

    required property string accessibleName
    /// For assistive tools, besides the name.
    property string description: ""

    function press() {
        if (enabled)
            clicked();
    }

    padding: 0
    implicitWidth: 18
    implicitHeight: 18
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    nextCheckState: () => checkState
    onClicked: toggled()

    Accessible.role: Accessible.CheckBox
    Accessible.name: accessibleName
    Accessible.checkable: true
    Accessible.checked: checked
    // Qt 6.4 does not tell assistive tools that a control is disabled.
    Accessible.description: enabled ? description : qsTr("Not available")
    Accessible.onPressAction: box.press()
    Accessible.onToggleAction: box.press()

    indicator: RoundedBox {
        anchors.centerIn: parent
        width: 16
        height: 16
        cornerRadius: 4.5
        color: box.checked ? (box.down ? Theme.primaryDeep : Theme.primary)
                           : Theme.white(box.down ? 0.16 : box.hovered ? 0.12 : 0.07)
        outlineColor: box.checked ? Theme.primaryLight : Theme.white(box.hovered ? 0.42 : 0.3)

        Behavior on color {
            enabled: Theme.animated
            ColorAnimation { duration: Theme.pressDuration }
        }

        Symbol {
            anchors.centerIn: parent
            name: "checkmark"
            size: 9
            color: "white"
            opacity: box.checked ? 1 : 0
            scale: box.checked ? 1 : 0.5

            Behavior on opacity {
                enabled: Theme.animated
                NumberAnimation { duration: Theme.pressDuration }
            }
            Behavior on scale {
                enabled: Theme.animated
                NumberAnimation {
                    duration: Theme.shortDuration
                    easing.type: Easing.OutBack
                }
            }
        }

        FocusRing {
            shown: box.visualFocus
            elementRadius: 4.5
        }
    }
}
