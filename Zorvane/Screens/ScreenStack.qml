import QtQuick

/// A column of elements in the middle of the screen, each centred.
FocusScope {
    id: stack

    default property alias content: column.data
    required property real padding
    property real spacing: 20
    property real minimumWidth: 0

    /// What the elements may take at most.
    readonly property real availableWidth: width - 2 * padding

    Column {
        id: column

        readonly property real minimumContentWidth: stack.minimumWidth - 2 * stack.padding

        anchors.centerIn: parent
        width: Math.max(minimumContentWidth, implicitWidth)
        spacing: stack.spacing
    }
}
