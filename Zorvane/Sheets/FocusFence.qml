import QtQuick

/// Keeps the keyboard in its content: what Tab leaves at one end it enters at the other.
FocusScope {
    id: fence

    default property alias content: inside.data

    function focusFirst() {
        start.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
    }

    function focusLast() {
        end.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason);
    }

    // Only when nothing in the content has the focus, say because it was hidden just now.
    Keys.onTabPressed: focusFirst()
    Keys.onBacktabPressed: focusLast()

    Item {
        id: start

        activeFocusOnTab: true
        Accessible.ignored: true
        onActiveFocusChanged: {
            if (activeFocus)
                fence.focusLast();
        }
    }

    FocusScope {
        id: inside

        anchors.fill: parent
        focus: true
    }

    Item {
        id: end

        activeFocusOnTab: true
        Accessible.ignored: true
        onActiveFocusChanged: {
            if (activeFocus)
                fence.focusFirst();
        }
    }
}
