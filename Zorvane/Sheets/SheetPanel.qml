import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import QtQuick.Window
import Zorvane

/// The panel of a sheet: a column of blocks, which scrolls if it has to, above blocks and buttons
/// that are always in sight.
FocusScope {
    id: panel

    required property string name
    property real columnWidth: 440
    property real maximumHeight: Infinity
    property real spacing: 18
    /// The block to scroll to when the height of the column changes.
    property Item inSight: null
    default property alias blocks: column.data
    property alias pinned: pins.data
    property alias buttons: footer.data

    readonly property int margin: 28
    readonly property int cornerRadius: 18
    readonly property real pinsHeight: pins.height > 0 ? pins.height + spacing : 0
    readonly property bool scrolls: scroller.height < column.y + column.height

    /// The height that is left for a block when all others are shown whole.
    function roomFor(block: Item): real {
        let room = maximumHeight - 2 * margin - footer.height - spacing - pinsHeight;
        for (let i = 0; i < column.children.length; ++i) {
            const other = column.children[i];
            if (other !== block && other?.visible && other.height > 0)
                room -= other.height + spacing;
        }
        return room;
    }

    /// Scrolls an item of the column into view, with its whole block if that fits.
    function follow(item: Item) {
        let block = item;
        while (block && block.parent !== column)
            block = block.parent;
        if (!block)
            return;
        const target = block.height < scroller.height ? block : item;
        const top = column.y + target.mapToItem(column, 0, 0).y - spacing;
        const least = top + target.height + 2 * spacing - scroller.height;
        const lowest = Math.max(0, scroller.contentHeight - scroller.height);
        scroller.contentY = Math.max(0, Math.min(lowest, top, Math.max(least, scroller.contentY)));
    }

    anchors.fill: parent
    focus: true
    implicitWidth: Math.max(columnWidth, footer.implicitWidth) + 2 * margin
    implicitHeight: column.height + spacing + pinsHeight + footer.height + 2 * margin
    Accessible.role: Accessible.Dialog
    Accessible.name: name
    Window.onActiveFocusItemChanged: follow(Window.activeFocusItem)

    SoftShadow {
        anchors.fill: parent
        anchors.margins: -margin
        color: Theme.black(0.6)
        radius: 30
        offsetY: 12
        cornerRadius: panel.cornerRadius
    }

    RoundedBox {
        anchors.fill: parent
        cornerRadius: panel.cornerRadius
        color: Theme.background
        outlineColor: Theme.glassBorder
    }

    Flickable {
        id: scroller

        anchors.top: parent.top
        anchors.topMargin: 1
        anchors.bottom: footer.top
        anchors.bottomMargin: panel.spacing + panel.pinsHeight
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

    Column {
        id: pins

        x: panel.margin
        anchors.bottom: footer.top
        anchors.bottomMargin: panel.spacing
        width: column.width
        spacing: panel.spacing
    }

    RowLayout {
        id: footer

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: panel.margin
        spacing: Theme.spacingMedium
    }
}
