import QtQuick
import Zorvane

/// The explanation of a category, and the links that select all of its items or none.
ResultsRow {
    id: row

    required property string title
    required property string explanation
    required property bool offersSelectAll

    signal allSelected()
    signal selectionCleared()

    contentHeight: column.implicitHeight + (isLast ? 14 : 8)
    focusTarget: summary

    Column {
        id: column

        x: 44
        width: parent.width - x - 14
        spacing: Theme.spacingSmall

        Rectangle {
            width: parent.width
            height: 1
            color: Theme.white(0.07)
        }

        Label {
            id: summary

            width: parent.width
            topPadding: 4
            focus: true
            text: row.explanation
            font: Theme.textFont(12, Font.Normal)
            color: Theme.textSecondary
            lineHeight: 1.2
            Accessible.focusable: true

            FocusRing {
                shown: summary.activeFocus
                cornerRadius: 4
            }
        }

        Row {
            visible: row.offersSelectAll
            spacing: 16

            PlainButton {
                text: qsTr("Select all")
                color: Theme.primaryLight
                font: Theme.callout
                focusPolicy: row.controlFocusPolicy
                Accessible.role: Accessible.Link
                description: row.title
                onClicked: row.allSelected()
            }

            PlainButton {
                text: qsTr("Clear selection")
                color: Theme.primaryLight
                font: Theme.callout
                focusPolicy: row.controlFocusPolicy
                Accessible.role: Accessible.Link
                description: row.title
                onClicked: row.selectionCleared()
            }
        }
    }
}
