import QtQuick
import Zorvane

/// A rounded square with a diagonal gradient and a white symbol in its centre.
Item {
    id: tile

    property real size: 88
    property real cornerRadius: 22
    property color fromColor: Theme.primaryLight
    property color toColor: Theme.primaryDeep
    required property string symbol
    property real symbolSize: 40
    property bool shadow: false

    implicitWidth: size
    implicitHeight: size

    SoftShadow {
        id: glow

        visible: tile.shadow
        anchors.fill: parent
        anchors.margins: -margin
        color: Theme.withOpacity(Theme.primary, 0.5)
        radius: 18
        offsetY: 6
        cornerRadius: tile.cornerRadius
    }

    RoundedBox {
        anchors.fill: parent
        cornerRadius: tile.cornerRadius
        color: tile.fromColor
        endColor: tile.toColor
    }

    Symbol {
        anchors.centerIn: parent
        name: tile.symbol
        size: tile.symbolSize
        color: "white"
    }
}
