import QtQuick
import QtQuick.Window
import Zorvane

Window {
    id: window

    required property AppState appState
    required property bool animated

    visible: true
    width: 1080
    height: 760
    minimumWidth: 900
    minimumHeight: 640
    title: "Zorvane"
    color: Theme.background

    Component.onCompleted: {
        Theme.animated = window.animated;
        window.appState.refreshPermissionState();
    }

    ScanView {
        anchors.fill: parent
        appState: window.appState
    }
}
