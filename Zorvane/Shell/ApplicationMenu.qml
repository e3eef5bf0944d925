import QtQuick
import QtQuick.Templates as T
import Zorvane

/// The application's menu.
T.Menu {
    id: menu

    required property UpdaterController updater

    signal aboutRequested
    signal quitRequested

    implicitWidth: 220
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 6
    margins: Theme.spacingSmall
    modal: true
    dim: false

    ApplicationMenuItem {
        text: qsTr("About Zorvane")
        onTriggered: menu.aboutRequested()
    }

    ApplicationMenuItem {
        text: qsTr("Check for Updates…")
        enabled: menu.updater.canCheckForUpdates
        onTriggered: menu.updater.checkForUpdates()
    }

    T.MenuSeparator {
        implicitHeight: 11
        padding: 5
        contentItem: Rectangle {
            implicitHeight: 1
            color: Theme.glassBorder
        }
    }

    ApplicationMenuItem {
        text: qsTr("Quit")
        onTriggered: menu.quitRequested()
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }

    background: Rectangle {
        color: Qt.tint(Theme.background, Theme.white(0.08))
        border.color: Theme.glassBorder
        radius: 12
    }
}
