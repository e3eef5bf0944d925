import QtQuick

/// A column of elements in the middle of the screen, each centred.
FocusScope {
    id: stack

    default property alias content: column.data
    required property real padding
    property real spacing: 20

    /// What the elements may take at most.
    readonly property real availableWidth: width - 2 * padding

    // In less room texts would be cut off, at the latest those of longer languages.
    implicitWidth: 520
    implicitHeight: 640

    Column {
        id: column

        anchors.centerIn: parent
        width: Math.max(stack.implicitWidth - 2 * stack.padding, implicitWidth)
        spacing: stack.spacing
    }
}
