pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Qt.labs.qmlmodels
import Zorvane

/// The categories with their contents, and the card of the cloud drive.
KeyboardList {
    id: list

    required property ResultsModel results
    required property ICloudModel icloud
    /// The space for the scroll bar beside the rows.
    property real gutter: 14

    readonly property real rowWidth: width - gutter

    reuseItems: true
    bottomMargin: 16
    Accessible.name: qsTr("Results")

    displaced: Transition {
        enabled: Theme.animated

        NumberAnimation {
            property: "y"
            duration: Theme.shortDuration
            easing.type: Easing.OutCubic
        }
    }

    model: results

    delegate: DelegateChooser {
        role: "kind"

        DelegateChoice {
            roleValue: "category"

            CategoryRow {
                onExpansionToggled: list.results.toggleExpanded(index)
                onSelectionToggled: isSelected => list.results.setSelected(index, isSelected)
            }
        }

        DelegateChoice {
            roleValue: "details"

            DetailsRow {
                onAllSelected: list.results.selectAll(index)
                onSelectionCleared: list.results.clearSelection(index)
            }
        }

        DelegateChoice {
            roleValue: "item"

            ItemRow {
                onSelectionToggled: isSelected => list.results.setSelected(index, isSelected)
            }
        }

        DelegateChoice {
            roleValue: "card"

            ICloudBridgeCard {
                icloud: list.icloud
            }
        }
    }

    T.ScrollBar.vertical: ThinScrollBar {}
}
