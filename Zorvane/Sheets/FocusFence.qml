import QtQuick

/// Keeps the keyboard focus in its content: Tab wraps around at both ends.
FocusScope {
    id: fence

    default property alias content: inside.data

    function focusFirst() {
        start.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason);
    }

    function focusLast() {
        end.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason);
    }

    // Reached only if nothing in the content has the focus, for example because it was just hidden.
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
