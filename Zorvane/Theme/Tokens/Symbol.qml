import QtQuick
import QtQuick.Window
import Zorvane

/// A symbol that suits text of the font size `size`. Like a line of that text, it is a little higher
/// than the size.
Item {
    id: symbol

    required property string name
    property real size: 13
    property color color: Theme.textPrimary

    readonly property int side: Math.round(size * 1.2)

    implicitWidth: side
    implicitHeight: side
    Accessible.ignored: true

    Image {
        anchors.centerIn: parent
        width: symbol.side
        height: symbol.side
        source: SymbolImages.url(symbol.name, symbol.color)
        sourceSize.width: Math.ceil(symbol.side * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(symbol.side * Screen.devicePixelRatio)
    }
}
