import QtQuick
import QtQuick.Templates as T

/// A row of a KeyboardList.
FocusScope {
    id: row

    /// In the model.
    required property int index
    /// Gets the keyboard first. A row without an enabled control takes it itself.
    required property Item focusTarget

    readonly property bool isTabStop: ListView.isCurrentItem || activeFocus
    readonly property int controlFocusPolicy: isTabStop ? Qt.StrongFocus : Qt.ClickFocus

    function takeKeyboard() {
        focusTarget.forceActiveFocus(Qt.TabFocusReason);
        if (focusTarget instanceof T.Control)
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
