pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// A line that opens to tell why a clean brings less free space than the sizes add up to.
Column {
    id: gain

    required property string text
    /// Of reclaimRow.
    required property var causes
    property bool isExpanded: false

    readonly property bool canExpand: causes.length > 0

    spacing: 8

    PlainButton {
        visible: gain.canExpand
        text: gain.text
        description: gain.isExpanded ? qsTr("Expanded") : qsTr("Collapsed")
        symbol: gain.isExpanded ? "chevron.down" : "chevron.right"
        font: Theme.callout
        onClicked: gain.isExpanded = !gain.isExpanded
    }

    Label {
        visible: !gain.canExpand
        width: parent.width
        text: gain.text
        color: Theme.textSecondary
    }

    Repeater {
        model: gain.isExpanded ? gain.causes : []

        Item {
            id: cause

            required property reclaimRow modelData

            width: gain.width
            implicitHeight: Math.max(texts.height, size.height)

            Column {
                id: texts

                width: size.x - Theme.spacingMedium
                spacing: 1

                Label {
                    width: parent.width
                    text: cause.modelData.title
                    font: Theme.calloutSemibold
                }

                Label {
                    width: parent.width
                    text: cause.modelData.detail
                    font: Theme.caption
                    color: Theme.textSecondary
                }
            }

            Label {
                id: size

                x: cause.width - width
                text: cause.modelData.sizeText
                wrapMode: Text.NoWrap
                font: Theme.numberFont(12, Font.Normal)
                color: Theme.textSecondary
            }
        }
    }
}
