import QtQuick
import QtQuick.Templates as T

/// A row of a KeyboardList.
FocusScope {
    id: row

    /// The position in the model.
    required property int index
    /// Gets the focus first; the row itself does while this is disabled.
    required property Item focusTarget

    readonly property bool isTabStop: ListView.isCurrentItem || activeFocus
    readonly property int controlFocusPolicy: isTabStop ? Qt.StrongFocus : Qt.ClickFocus

    function takeKeyboard() {
        const target = focusTarget.enabled ? focusTarget : row;
        target.forceActiveFocus(Qt.TabFocusReason);
        if (target instanceof T.Control)
            focusTarget.focusReason = Qt.TabFocusReason;
    }

    onActiveFocusChanged: {
        if (activeFocus)
            ListView.view.currentIndex = index;
    }
    // The list stops painting a pooled row; assistive tools would still see it.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true
}
