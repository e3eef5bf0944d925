import QtQuick
import QtQuick.Window
import Zorvane

/// The top of the window, by which it is moved, with the menu and the window buttons.
Item {
    id: bar

    required property Window target
    required property UpdaterController updater

    signal aboutRequested

    readonly property bool isMenuOpen: menu.visible
    readonly property bool isMaximized: target.visibility === Window.Maximized

    function toggleMaximized() {
        isMaximized ? target.showNormal() : target.showMaximized();
    }

    implicitHeight: 40

    SystemMoveArea {
        property point pressed

        anchors.fill: parent
        onPressed: mouse => { pressed = Qt.point(mouse.x, mouse.y); }
        onPositionChanged: mouse => {
            const distance = Math.abs(mouse.x - pressed.x) + Math.abs(mouse.y - pressed.y);
            if (distance > Application.styleHints.startDragDistance) {
                bar.target.startSystemMove();
                releaseMouse();
            }
        }
        onDoubleClicked: bar.toggleMaximized()
    }

    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.spacingSmall
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacingTiny

        WindowButton {
            id: menuButton

            text: qsTr("Menu")
            symbol: "line.3.horizontal"
            onClicked: menu.open()

            ApplicationMenu {
                id: menu

                y: menuButton.height + Theme.spacingTiny
                x: menuButton.width - width
                updater: bar.updater
                onAboutRequested: bar.aboutRequested()
                onQuitRequested: bar.target.close()
            }
        }

        WindowButton {
            text: qsTr("Minimize")
            symbol: "minus"
            onClicked: bar.target.showMinimized()
        }

        WindowButton {
            text: bar.isMaximized ? qsTr("Restore") : qsTr("Maximize")
            symbol: bar.isMaximized ? "square.on.square" : "square"
            onClicked: bar.toggleMaximized()
        }

        WindowButton {
            text: qsTr("Close")
            symbol: "xmark"
            hoverColor: Theme.danger
            onClicked: bar.target.close()
        }
    }
}
