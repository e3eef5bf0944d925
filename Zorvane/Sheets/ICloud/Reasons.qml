pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// Sentences that tell why something stayed as it was.
Column {
    id: reasons

    required property var sentences

    visible: sentences.length > 0
    spacing: Theme.spacingSmall

    Repeater {
        model: reasons.sentences

        SymbolText {
            required property string modelData

            width: parent?.width ?? 0
            symbol: "exclamationmark.triangle"
            symbolColor: Theme.warning
            symbolSize: 13
            text: modelData
            font: Theme.caption
            color: Theme.textSecondary
        }
    }
}
