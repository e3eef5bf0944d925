import QtQuick
import QtQuick.Layouts
import Zorvane

/// Opens the sheet that releases downloads of the cloud drive.
ResultsRow {
    id: card

    required property ICloudModel icloud

    isFirst: true
    topGap: 10
    contentHeight: line.implicitHeight + 28
    focusTarget: area

    CardButton {
        id: area

        focusPolicy: card.controlFocusPolicy
        text: title.text
        description: explanation.text
        onClicked: card.icloud.open()
    }

    RowLayout {
        id: line

        anchors.fill: parent
        anchors.margins: 14
        spacing: Theme.spacingMedium

        Item {
            implicitWidth: 18
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            RowLayout {
                spacing: Theme.spacingSmall

                Symbol {
                    name: "icloud.fill"
                    size: 12
                    color: Theme.catOther
                }

                Label {
                    id: title

                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    elide: Text.ElideRight
                    text: card.icloud.driveTitle
                    font: Theme.textFont(14, Font.DemiBold)
                    Accessible.ignored: true
                }

                Badge {
                    text: qsTr("Nothing is deleted")
                    color: Theme.catOther
                }
            }

            Label {
                id: explanation

                Layout.fillWidth: true
                text: qsTr("Frees the space taken by %1 files downloaded on this Mac. Nothing is deleted from the cloud.").arg(card.icloud.driveNames)
                font: Theme.textFont(12, Font.Normal)
                color: Theme.textSecondary
                Accessible.ignored: true
            }
        }

        ColumnLayout {
            visible: !card.icloud.isMeasured
            spacing: 3

            SecondaryButton {
                Layout.alignment: Qt.AlignHCenter
                text: qsTr("Measure")
                cornerRadius: Theme.radiusCapsule
                focusPolicy: card.controlFocusPolicy
                onClicked: {
                    // This button disappears once something is measured; the card stays.
                    area.forceActiveFocus(visualFocus ? Qt.TabFocusReason : Qt.MouseFocusReason);
                    card.icloud.open();
                }
            }

            Label {
                Layout.alignment: Qt.AlignHCenter
                text: qsTr("takes a moment")
                font: Theme.caption
                color: Theme.textTertiary
            }
        }

        Spinner {
            visible: card.icloud.isMeasuring
            color: Theme.catOther
            Accessible.name: qsTr("Measuring…")
        }

        Label {
            Layout.minimumWidth: 78
            visible: card.icloud.isMeasured && !card.icloud.isMeasuring
            text: card.icloud.downloadedText
            font: Theme.numberFont(14, Font.Bold)
            horizontalAlignment: Text.AlignRight
        }

        Symbol {
            visible: card.icloud.isMeasured
            name: "chevron.right"
            size: 10
            color: Theme.textTertiary
        }
    }
}
