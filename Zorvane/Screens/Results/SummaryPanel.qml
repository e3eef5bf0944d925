pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Zorvane

/// The total size of the results, and its share of each group.
Item {
    id: panel

    required property SummaryModel summary

    readonly property real padding: 20

    implicitWidth: 300
    implicitHeight: column.implicitHeight + 2 * padding

    GlassSurface {
        anchors.fill: parent
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: panel.padding
        spacing: Theme.spacingLarge

        DonutChart {
            Layout.alignment: Qt.AlignHCenter
            summary: panel.summary
        }

        ColumnLayout {
            Layout.fillWidth: true
            visible: legend.count > 0
            spacing: 9

            Repeater {
                id: legend

                model: panel.summary.rows

                RowLayout {
                    id: line

                    required property summaryRow modelData

                    spacing: Theme.spacingSmall

                    RoundedBox {
                        implicitWidth: 8
                        implicitHeight: 8
                        cornerRadius: 2.5
                        color: Theme[line.modelData.colorName]
                    }

                    Label {
                        Layout.fillWidth: true
                        text: line.modelData.label
                        font: Theme.callout
                        color: Theme.textSecondary
                        elide: Text.ElideRight
                    }

                    Label {
                        text: line.modelData.sizeText
                        font: Theme.numberFont(12, Font.Medium)
                    }
                }
            }
        }

        SymbolText {
            Layout.fillWidth: true
            visible: panel.summary.anyAccessErrors
            symbol: "exclamationmark.triangle"
            symbolSize: 12
            text: qsTr("Some areas could not be read — grant Full Disk Access for the full amount")
            font: Theme.caption
            color: Theme.warning
        }
    }
}
