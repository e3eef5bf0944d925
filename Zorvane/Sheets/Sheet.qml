import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Zorvane

/// A modal panel over a dimmed background. The panel exists only while the sheet is open. It keeps
/// the keyboard focus, and returns it to the item that had it before. The owner disables the items
/// below while the sheet is open.
Item {
    id: sheet

    property bool shown: false
    property bool closesOnEscape: true
    /// A SheetPanel.
    required property Component panel

    /// Escape was pressed. The owner decides whether the sheet closes.
    signal dismissed

    property SheetPanel content: null
    readonly property bool isOpen: content !== null
    property Item previousFocus: null
    property int focusReason: Qt.OtherFocusReason
    property real presence: isOpen ? 1 : 0

    function open() {
        if (isOpen)
            return;
        previousFocus = Window.activeFocusItem;
        const control = previousFocus as T.Control;
        focusReason = control?.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason;
        const made = panel.createObject(place, {
            maximumHeight: Qt.binding(() => sheet.height - 2 * Theme.spacingHuge)
        }) as SheetPanel;
        // Take the focus before the owner disables the focused item. If the sheet itself is covered,
        // it gets the focus later.
        if (enabled)
            fence.forceActiveFocus(focusReason);
        else
            fence.focus = true;
        content = made;
    }

    function close() {
        if (!isOpen)
            return;
        // An item that has taken the focus meanwhile keeps it.
        const hadFocus = fence.activeFocus;
        // The panel is deleted later, and must not keep the focus until then.
        content.focus = false;
        content.visible = false;
        content.destroy();
        content = null;
        if (hadFocus && previousFocus?.visible)
            previousFocus.forceActiveFocus(focusReason);
        else
            fence.focus = false;
        previousFocus = null;
    }

    function takeKeyboard() {
        fence.forceActiveFocus();
    }

    onShownChanged: shown ? open() : close()
    Component.onCompleted: {
        if (shown)
            open();
    }

    Behavior on presence {
        enabled: Theme.animated
        NumberAnimation {
            duration: Theme.shortDuration
            easing.type: Easing.OutCubic
        }
    }

    Dimming {
        anchors.fill: parent
        enabled: sheet.isOpen
        darkness: 0.55
        opacity: sheet.presence
        visible: sheet.isOpen || opacity > 0
    }

    FocusFence {
        id: fence

        anchors.fill: parent
        visible: sheet.isOpen
        Keys.onEscapePressed: event => {
            event.accepted = sheet.closesOnEscape;
            if (sheet.closesOnEscape)
                sheet.dismissed();
        }

        FocusScope {
            id: place

            anchors.centerIn: parent
            width: Math.min(sheet.content?.implicitWidth ?? 0, sheet.width - 2 * Theme.spacingHuge)
            height: Math.min(sheet.content?.implicitHeight ?? 0, sheet.height - 2 * Theme.spacingHuge)
            focus: true
            opacity: sheet.presence
            scale: 0.97 + 0.03 * sheet.presence
        }
    }
}
