import QtQuick
import QtQuick.Layouts
import Zorvane

/// Opens the sheet that releases downloads of the cloud drive.
ResultsRow {
    id: card

    required property AppState appState

    isFirst: true
    topGap: 10
    contentHeight: line.implicitHeight + 28
    focusTarget: area

    ICloudModel {
        id: icloud

        appState: card.appState
    }

    CardButton {
        id: area

        focusPolicy: card.controlFocusPolicy
        text: title.text
        description: explanation.text
        onClicked: icloud.open()
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

                    text: qsTr("iCloud Drive")
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
                text: qsTr("Frees the space taken by iCloud files downloaded on this Mac. Nothing is deleted from the cloud.")
                font: Theme.textFont(12, Font.Normal)
                color: Theme.textSecondary
                Accessible.ignored: true
            }
        }

        ColumnLayout {
            visible: !icloud.isMeasured
            spacing: 3

            SecondaryButton {
                Layout.alignment: Qt.AlignHCenter
                text: qsTr("Measure")
                cornerRadius: Theme.radiusCapsule
                focusPolicy: card.controlFocusPolicy
                onClicked: {
                    // This button disappears once something is measured; the card stays.
                    area.forceActiveFocus(visualFocus ? Qt.TabFocusReason : Qt.MouseFocusReason);
                    icloud.open();
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
            visible: icloud.isMeasuring
            color: Theme.catOther
            Accessible.name: qsTr("Measuring…")
        }

        Label {
            Layout.minimumWidth: 78
            visible: icloud.isMeasured && !icloud.isMeasuring
            text: icloud.downloadedText
            font: Theme.numberFont(14, Font.Bold)
            horizontalAlignment: Text.AlignRight
        }

        Symbol {
            visible: icloud.isMeasured
            name: "chevron.right"
            size: 10
            color: Theme.textTertiary
        }
    }
}
