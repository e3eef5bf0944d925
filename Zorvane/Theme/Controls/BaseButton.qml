import QtQuick
import QtQuick.Templates as T

/// What all buttons have in common whatever they look like. The mouse, the keyboard and assistive
/// tools press a button while it is enabled, and then only.
T.AbstractButton {
    id: button

    /// Whether there is something for it to do. What lies over a button disables it too, and leaves
    /// its look alone.
    property bool available: true
    property bool pressedByReturn: true
    /// What assistive tools tell besides its name.
    property string description: ""

    function press() {
        if (enabled)
            clicked();
    }

    function pressByReturn(event: KeyEvent) {
        if (pressedByReturn && !event.isAutoRepeat)
            press();
    }

    enabled: available
    opacity: available ? 1 : 0.5
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.Button
    Accessible.name: text
    // Qt 6.4 does not tell assistive tools that a control is disabled.
    Accessible.description: enabled ? description : qsTr("Not available")
    Accessible.onPressAction: button.press()
    Keys.onReturnPressed: event => button.pressByReturn(event)
    Keys.onEnterPressed: event => button.pressByReturn(event)
}
