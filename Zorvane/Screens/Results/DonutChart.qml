pragma ComponentBehavior: Bound

import QtQuick
import Zorvane

/// The groups as arcs of a ring around the total.
Item {
    id: chart

    required property SummaryModel summary

    readonly property real frame: 170
    readonly property real padding: 10
    readonly property real lineWidth: 13

    implicitWidth: frame + 2 * padding
    implicitHeight: frame + 2 * padding

    component Arc: RingArc {
        width: chart.implicitWidth
        height: chart.implicitHeight
        diameter: chart.frame
        lineWidth: chart.lineWidth
    }

    Arc {
        color: Theme.white(0.08)
    }

    Repeater {
        model: chart.summary.rows

        Arc {
            required property summaryRow modelData

            start: modelData.start
            end: modelData.end
            color: Theme[modelData.colorName]
        }
    }

    Column {
        anchors.centerIn: parent
        spacing: 2

        Label {
            // Fits inside the ring.
            width: chart.frame - chart.lineWidth - 24
            text: chart.summary.totalText
            font: Theme.numberFont(26, Font.ExtraBold)
            wrapMode: Text.NoWrap
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 12
            horizontalAlignment: Text.AlignHCenter
        }

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("recoverable")
            font.family: Theme.caption.family
            font.pixelSize: Theme.textFont(10.5, Font.Medium).pixelSize
            font.weight: Font.Medium
            font.capitalization: Font.AllUppercase
            font.letterSpacing: 0.6
            color: Theme.textTertiary
        }
    }
}
