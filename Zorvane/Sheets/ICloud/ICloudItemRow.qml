import QtQuick
import QtQuick.Layouts
import Zorvane

/// An entry of the cloud drive: measured, released, or too slow to be measured.
KeyboardRow {
    id: row

    required property string name
    required property bool isBusy
    required property bool isReleased
    required property bool isSelected
    required property bool isOffered
    required property var restText
    required property var filesText
    required property var sizeText
    required property string drive
    required property bool canFetch
    /// The title of the folder that begins with this row; empty for none.
    required property string section

    readonly property real headingHeight: section === "" ? 0 : heading.implicitHeight
    readonly property bool isMeasured: !isBusy && !isReleased
    readonly property bool hasControl: !isBusy && (isOffered || isReleased)
    readonly property bool canBeSelected: isMeasured && isOffered

    signal toggled
    signal fetchRequested

    implicitHeight: headingHeight + content.implicitHeight + 18
    focusTarget: isReleased ? fetchButton : box
    activeFocusOnTab: isTabStop && !hasControl
    onIsReleasedChanged: {
        if (activeFocus)
            Qt.callLater(row.takeKeyboard);
    }

    Label {
        id: heading

        visible: row.section !== ""
        width: parent.width
        topPadding: 4
        bottomPadding: 6
        text: row.section
        font: Theme.captionMedium
        color: Theme.textSecondary
        elide: Text.ElideMiddle
    }

    GlassSurface {
        anchors.fill: parent
        anchors.topMargin: row.headingHeight
        cornerRadius: Theme.radiusSmall
        selected: row.isSelected
    }

    FocusRing {
        anchors.topMargin: row.headingHeight
        shown: row.activeFocus && !row.hasControl
        gap: -2
        cornerRadius: Theme.radiusSmall
    }

    RowLayout {
        id: content

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 12
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: row.headingHeight / 2
        spacing: 10

        SelectionBox {
            id: box

            focus: true
            focusPolicy: row.controlFocusPolicy
            accessibleName: row.name
            checked: row.isSelected
            enabled: row.canBeSelected
            opacity: row.canBeSelected ? 1 : 0
            Accessible.ignored: !row.canBeSelected
            onToggled: row.toggled()
        }

        Symbol {
            name: "folder.fill"
            size: 12
            color: row.isBusy ? Theme.warning : Theme.catOther
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Label {
                Layout.fillWidth: true
                text: row.name
                font: Theme.fileFont(13, Font.Medium)
                elide: Text.ElideMiddle
            }

            Label {
                visible: row.isBusy
                Layout.fillWidth: true
                text: qsTr("%1 is busy with this folder").arg(row.drive)
                font: Theme.caption
                color: Theme.warning
            }

            Label {
                visible: row.isReleased
                Layout.fillWidth: true
                text: qsTr("measure again later for the exact number")
                font: Theme.caption
                color: Theme.textTertiary
            }

            Label {
                visible: row.isMeasured && text !== ""
                Layout.fillWidth: true
                text: row.restText ?? ""
                font: Theme.caption
                color: Theme.warning
            }
        }

        Label {
            visible: row.isMeasured && text !== ""
            text: row.filesText ?? ""
            font: Theme.numberFont(11, Font.Normal)
            color: Theme.textTertiary
        }

        Label {
            visible: row.isMeasured
            text: row.sizeText ?? ""
            font: Theme.numberFont(13, Font.DemiBold)
        }

        SecondaryButton {
            id: fetchButton

            visible: row.isReleased
            // It stays enabled, so that it keeps the keyboard while something is fetched.
            opacity: row.canFetch ? 1 : 0.5
            focusPolicy: row.controlFocusPolicy
            text: qsTr("Fetch")
            Accessible.name: qsTr("Fetch %1").arg(row.name)
            small: true
            cornerRadius: Theme.radiusCapsule
            onClicked: row.fetchRequested()
        }

        Badge {
            visible: row.isReleased
            text: qsTr("released")
            color: Theme.success
            font: Theme.textFont(10, Font.Bold)
        }

        Badge {
            visible: row.isBusy
            text: qsTr("not measured")
            color: Theme.warning
            font: Theme.textFont(10, Font.Bold)
        }
    }
}
