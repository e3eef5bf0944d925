import QtQuick
import QtQuick.Layouts
import Zorvane

/// The header of a category.
ResultsRow {
    id: row

    required property string title
    required property string countText
    required property string sizeText
    required property bool isSelected
    required property bool isSelectable
    required property bool isDiagnostic
    required property bool isReviewRequired
    required property bool hadAccessErrors
    required property bool isExpanded

    /// False for a header that is reused for another category, which must not animate.
    property bool turnsSlowly: false

    signal expansionToggled()
    signal selectionToggled(isSelected: bool)

    isFirst: true
    topGap: 10
    contentHeight: line.implicitHeight + 28
    focusTarget: header
    highlight: header.down ? 0.05 : row.hovered ? 0.03 : 0
    ListView.onPooled: turnsSlowly = false

    CardButton {
        id: header

        focusPolicy: row.controlFocusPolicy
        // The title comes last, since it may contain "%1".
        Accessible.name: qsTr("%3, %1, %2").arg(row.countText).arg(row.sizeText).arg(row.title)
        description: row.isExpanded ? qsTr("Expanded") : qsTr("Collapsed")
        onClicked: {
            row.turnsSlowly = true;
            row.expansionToggled();
        }
    }

    RowLayout {
        id: line

        anchors.fill: parent
        anchors.margins: 14
        spacing: Theme.spacingMedium

        Item {
            implicitWidth: 18
            implicitHeight: 18

            SelectionBox {
                visible: row.isSelectable
                focusPolicy: row.controlFocusPolicy
                checked: row.isSelected
                accessibleName: qsTr("Select %1").arg(row.title)
                onToggled: row.selectionToggled(!row.isSelected)
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(Math.max(title.implicitWidth, count.implicitWidth))
            spacing: 2

            Label {
                id: title

                Layout.fillWidth: true
                text: row.title
                font: Theme.textFont(14, Font.DemiBold)
                elide: Text.ElideRight
                Accessible.ignored: true
            }

            Label {
                id: count

                Layout.fillWidth: true
                text: row.countText
                font: Theme.caption
                color: Theme.textSecondary
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }

        Row {
            visible: row.isDiagnostic || row.isReviewRequired
            spacing: 6

            Badge {
                visible: row.isDiagnostic
                text: qsTr("diagnostic")
                color: Theme.catOther
            }

            Badge {
                visible: row.isReviewRequired
                text: qsTr("review required")
                color: Theme.warning
            }
        }

        Item {
            id: lock

            implicitWidth: lockSymbol.implicitWidth
            implicitHeight: lockSymbol.implicitHeight
            visible: row.hadAccessErrors
            activeFocusOnTab: row.isTabStop
            Accessible.role: Accessible.StaticText
            Accessible.name: lockHelp.text

            Symbol {
                id: lockSymbol

                name: "lock.fill"
                size: 12
                color: Theme.warning
            }

            FocusRing {
                shown: lock.activeFocus
                cornerRadius: 4
            }

            HoverHelp {
                id: lockHelp

                text: qsTr("Area could not be read due to missing permission")
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.preferredWidth: 0
        }

        Label {
            Layout.minimumWidth: 78
            text: row.sizeText
            font: Theme.numberFont(14, Font.Bold)
            horizontalAlignment: Text.AlignRight
            Accessible.ignored: true
        }

        Symbol {
            name: "chevron.down"
            size: 10
            color: Theme.textTertiary
            rotation: row.isExpanded ? 180 : 0

            Behavior on rotation {
                enabled: Theme.animated && row.turnsSlowly
                NumberAnimation {
                    duration: Theme.shortDuration
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
