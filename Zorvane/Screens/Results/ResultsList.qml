pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Qt.labs.qmlmodels
import Zorvane

/// The categories with what they hold, and the card of the cloud drive. The Tab key goes through
/// the controls of the current row; the arrow keys go to other rows.
ListView {
    id: list

    required property AppState appState
    /// Beside the rows, for the scroll bar.
    property real gutter: 14

    readonly property real rowWidth: width - gutter

    function goTo(row: int) {
        currentIndex = Math.max(0, Math.min(row, count - 1));
        (currentItem as ResultsRow)?.takeKeyboardFocus();
    }

    function rowsPerPage(): int {
        return Math.max(1, Math.floor(height / 40));
    }

    clip: true
    reuseItems: true
    // Rows in the buffer would be made later, and Qt 6.4 warns when they are gone by then.
    cacheBuffer: 0
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    bottomMargin: 16
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Results")

    Keys.onUpPressed: goTo(currentIndex - 1)
    Keys.onDownPressed: goTo(currentIndex + 1)
    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Home:
            goTo(0);
            break;
        case Qt.Key_End:
            goTo(count - 1);
            break;
        case Qt.Key_PageUp:
            goTo(currentIndex - rowsPerPage());
            break;
        case Qt.Key_PageDown:
            goTo(currentIndex + rowsPerPage());
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    displaced: Transition {
        enabled: Theme.animated

        NumberAnimation {
            property: "y"
            duration: Theme.shortDuration
            easing.type: Easing.OutCubic
        }
    }

    model: ResultsModel {
        id: results

        appState: list.appState
    }

    delegate: DelegateChooser {
        role: "kind"

        DelegateChoice {
            roleValue: "category"

            CategoryRow {
                onExpansionToggled: results.toggleExpanded(index)
                onSelectionToggled: isSelected => results.setSelected(index, isSelected)
            }
        }

        DelegateChoice {
            roleValue: "details"

            DetailsRow {
                onAllSelected: results.selectAll(index)
                onSelectionCleared: results.clearSelection(index)
            }
        }

        DelegateChoice {
            roleValue: "item"

            ItemRow {
                onSelectionToggled: isSelected => results.setSelected(index, isSelected)
            }
        }

        DelegateChoice {
            roleValue: "card"

            ICloudBridgeCard {
                appState: list.appState
            }
        }
    }

    T.ScrollBar.vertical: ThinScrollBar {}
}
