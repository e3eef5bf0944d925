import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import QtQuick.Window
import Zorvane

/// The panel of a sheet: a column of blocks, which scrolls when there is too little room, and below
/// it, always in sight, the buttons.
FocusScope {
    id: panel

    required property string name
    property real columnWidth: 440
    property real spacing: 18
    /// A block that is scrolled to when the column grows or shrinks.
    property Item inSight: null
    default property alias blocks: column.data
    property alias buttons: footer.data

    readonly property int margin: 28
    readonly property int cornerRadius: 18
    readonly property bool scrolls: scroller.height < column.y + column.height

    /// Scrolls the column as far as needed to bring an item of it in sight.
    function follow(item: Item) {
        if (!item)
            return;
        for (let outer = item; outer !== column; outer = outer.parent) {
            if (!outer)
                return;
        }
        const top = item.mapToItem(column, 0, 0).y;
        const lowest = Math.max(0, scroller.contentHeight - scroller.height);
        const least = Math.min(top + item.height + 2 * margin - scroller.height, lowest);
        scroller.contentY = Math.max(least, Math.min(scroller.contentY, top));
    }

    anchors.fill: parent
    focus: true
    implicitWidth: Math.max(columnWidth, footer.implicitWidth) + 2 * margin
    implicitHeight: column.height + spacing + footer.height + 2 * margin
    Accessible.role: Accessible.Dialog
    Accessible.name: name
    Window.onActiveFocusItemChanged: follow(Window.activeFocusItem)

    SoftShadow {
        anchors.fill: parent
        anchors.margins: -margin
        color: Theme.black(0.6)
        radius: 30
        offsetY: 14
        cornerRadius: panel.cornerRadius
    }

    Rectangle {
        anchors.fill: parent
        radius: panel.cornerRadius
        color: Theme.background
    }

    Rectangle {
        anchors.fill: parent
        radius: panel.cornerRadius
        color: "transparent"
        border.width: 1
        border.color: Theme.glassBorder
    }

    Flickable {
        id: scroller

        anchors.top: parent.top
        anchors.topMargin: 1
        anchors.bottom: footer.top
        anchors.bottomMargin: panel.spacing
        width: parent.width
        contentHeight: column.y + column.height + (panel.scrolls ? panel.spacing : 0)
        onContentHeightChanged: panel.follow(panel.inSight)
        boundsBehavior: Flickable.StopAtBounds
        interactive: panel.scrolls
        clip: panel.scrolls

        T.ScrollBar.vertical: ThinScrollBar {
            parent: panel
            x: panel.width - width - 3
            y: scroller.y + panel.cornerRadius
            height: scroller.height - panel.cornerRadius - 3
        }

        Column {
            id: column

            x: panel.margin
            y: panel.margin - 1
            width: scroller.width - 2 * panel.margin
            spacing: panel.spacing
        }
    }

    Rectangle {
        visible: panel.scrolls
        anchors.top: scroller.bottom
        width: parent.width
        height: 1
        color: Theme.glassBorder
    }

    RowLayout {
        id: footer

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: panel.margin
        spacing: Theme.spacingMedium
    }
}
