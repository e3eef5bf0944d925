import QtQuick
import QtQuick.Templates as T
import Zorvane

/// A frosted card around its content.
T.Pane {
    id: card

    property real cornerRadius: Theme.radiusLarge
    property bool selected: false

    padding: 14
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    background: GlassSurface {
        cornerRadius: card.cornerRadius
        selected: card.selected
    }
}
