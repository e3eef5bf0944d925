import QtQuick
import QtQuick.Templates as T
import Zorvane

/// What all rows of the results have in common: their part of the card, the fade when their
/// category opens, and how the keyboard comes to them.
FocusScope {
    id: row

    default property alias content: body.data
    property alias highlight: slice.highlight

    /// Of the row in the model.
    required property int index
    required property bool isLast
    required property bool hasSelectedLook
    property bool isFirst: false
    property real topGap: 0
    required property real contentHeight
    /// What the keyboard comes to first.
    required property Item focusTarget

    readonly property bool hovered: pointer.hovered && pointer.point.position.y >= topGap

    /// Only the current row's controls are stops of the Tab key; the arrows lead to other rows.
    readonly property bool isTabStop: ListView.isCurrentItem || activeFocus
    readonly property int controlFocusPolicy: isTabStop ? Qt.StrongFocus : Qt.ClickFocus

    function takeKeyboardFocus() {
        focusTarget.forceActiveFocus(Qt.TabFocusReason);
        if (focusTarget instanceof T.Control)
            focusTarget.focusReason = Qt.TabFocusReason;
    }

    width: (ListView.view as ResultsList)?.rowWidth ?? 0
    height: topGap + contentHeight
    onActiveFocusChanged: {
        if (activeFocus)
            ListView.view.currentIndex = index;
    }

    ListView.onAdd: {
        if (Theme.animated)
            opening.restart();
    }
    // The list only stops painting what it keeps for later; assistive tools would still see it.
    ListView.onPooled: {
        opening.stop();
        body.opacity = 1;
        visible = false;
    }
    ListView.onReused: visible = true

    HoverHandler {
        id: pointer
    }

    NumberAnimation {
        id: opening

        target: body
        property: "opacity"
        from: 0
        to: 1
        duration: 2 * Theme.shortDuration
        easing.type: Easing.OutCubic
    }

    CardSlice {
        id: slice

        y: row.topGap
        width: parent.width
        height: row.contentHeight
        isFirst: row.isFirst
        isLast: row.isLast
        selected: row.hasSelectedLook
    }

    Item {
        id: body

        y: row.topGap
        width: parent.width
        height: row.contentHeight
    }
}
