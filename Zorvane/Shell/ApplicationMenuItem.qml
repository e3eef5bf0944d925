import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A command in the application's menu.
T.MenuItem {
    id: item

    function press() {
        if (enabled)
            clicked();
    }

    implicitWidth: 208
    implicitHeight: 32
    horizontalPadding: 10
    font: Theme.body
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    // Qt 6.4 does not tell assistive tools that a control is disabled.
    Accessible.description: enabled ? "" : qsTr("Not available")
    Accessible.onPressAction: item.press()

    contentItem: Text {
        text: item.text
        textFormat: Text.PlainText
        font: item.font
        color: Theme.textPrimary
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: Rectangle {
        radius: 8
        color: Theme.primary
        opacity: item.highlighted && item.enabled ? 0.3 : 0
    }
}
