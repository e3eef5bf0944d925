import QtQuick
import QtQuick.Templates as T

/// The behaviour of all buttons. The mouse, the keyboard and assistive tools can press a button only
/// while it is enabled.
T.AbstractButton {
    id: button

    /// A button that is not available is dimmed; one that is only disabled, because something covers
    /// it, is not.
    property bool available: true
    property bool pressedByReturn: true
    /// For assistive tools, besides the name.
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
