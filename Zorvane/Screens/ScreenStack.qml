import QtQuick

/// A column of elements in the middle of the screen.
FocusScope {
    id: stack

    default property alias content: column.data
    required property real padding
    property real spacing: 20

    /// For the elements.
    readonly property real availableWidth: width - 2 * padding

    // Leaves enough room for the texts of longer languages.
    implicitWidth: 520
    implicitHeight: 640

    Column {
        id: column

        anchors.centerIn: parent
        width: Math.max(stack.implicitWidth - 2 * stack.padding, implicitWidth)
        spacing: stack.spacing
    }
}
