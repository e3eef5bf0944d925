import QtQuick
import QtQuick.Window
import Zorvane

/// Indicates work of unknown duration.
Item {
    id: spinner

    enum ControlSize {
        Small,
        Large
    }

    property int controlSize: Spinner.Small
    property color color: Theme.primary

    /// A spinner that nobody can see must not cost processor time.
    readonly property bool turns: visible && Theme.animated && Window.visibility !== Window.Minimized
    readonly property int side: controlSize === Spinner.Large ? 36 : 16

    implicitWidth: side
    implicitHeight: side
    Accessible.role: Accessible.Indicator

    SpinnerArc {
        anchors.centerIn: parent
        width: spinner.side
        height: spinner.side
        color: spinner.color
        lineWidth: spinner.controlSize === Spinner.Large ? 3.5 : 2

        NumberAnimation on angle {
            running: spinner.turns
            from: 0
            to: 360
            duration: Theme.spinDuration
            loops: Animation.Infinite
        }
    }
}
