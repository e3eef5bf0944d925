pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window

/// The edges and corners for resizing the window.
Item {
    id: area

    required property Window target

    readonly property int thickness: 6

    visible: target.visibility === Window.Windowed

    component Edge: SystemMoveArea {
        required property int edges

        onPressed: {
            area.target.startSystemResize(edges);
            releaseMouse();
        }
    }

    Edge {
        edges: Qt.LeftEdge
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: area.thickness
        cursorShape: Qt.SizeHorCursor
    }

    Edge {
        edges: Qt.RightEdge
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        width: area.thickness
        cursorShape: Qt.SizeHorCursor
    }

    Edge {
        edges: Qt.TopEdge
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: area.thickness
        cursorShape: Qt.SizeVerCursor
    }

    Edge {
        edges: Qt.BottomEdge
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: area.thickness
        cursorShape: Qt.SizeVerCursor
    }

    Edge {
        edges: Qt.LeftEdge | Qt.TopEdge
        anchors { left: parent.left; top: parent.top }
        width: 2 * area.thickness
        height: 2 * area.thickness
        cursorShape: Qt.SizeFDiagCursor
    }

    Edge {
        edges: Qt.RightEdge | Qt.TopEdge
        anchors { right: parent.right; top: parent.top }
        width: 2 * area.thickness
        height: 2 * area.thickness
        cursorShape: Qt.SizeBDiagCursor
    }

    Edge {
        edges: Qt.LeftEdge | Qt.BottomEdge
        anchors { left: parent.left; bottom: parent.bottom }
        width: 2 * area.thickness
        height: 2 * area.thickness
        cursorShape: Qt.SizeBDiagCursor
    }

    Edge {
        edges: Qt.RightEdge | Qt.BottomEdge
        anchors { right: parent.right; bottom: parent.bottom }
        width: 2 * area.thickness
        height: 2 * area.thickness
        cursorShape: Qt.SizeFDiagCursor
    }
}
