pragma Singleton

import QtQuick

/// The colours, distances, fonts and durations of the window. Lengths are in device-independent
/// pixels, durations in milliseconds.
QtObject {
    /// Set once, before the window is shown.
    property bool animated: true

    readonly property color background: rgb(7, 7, 12)
    readonly property color primary: rgb(139, 92, 246)
    readonly property color primaryLight: rgb(167, 139, 250)
    readonly property color primaryDeep: rgb(124, 58, 237)
    readonly property color meshViolet: rgb(91, 33, 182)
    readonly property color meshIndigo: rgb(30, 58, 138)
    readonly property color meshTeal: withOpacity(rgb(45, 212, 191), 0.5)
    readonly property color catWhatsApp: rgb(52, 211, 153)
    readonly property color catCaches: rgb(139, 92, 246)
    readonly property color catDev: rgb(45, 212, 191)
    readonly property color catOther: rgb(96, 165, 250)
    readonly property color success: rgb(52, 211, 153)
    readonly property color warning: rgb(245, 166, 35)
    readonly property color danger: rgb(248, 113, 113)
    readonly property color textPrimary: rgb(237, 238, 244)
    readonly property color textSecondary: withOpacity(rgb(237, 238, 244), 0.62)
    readonly property color textTertiary: withOpacity(rgb(237, 238, 244), 0.4)
    readonly property color glassFill: white(0.055)
    readonly property color glassBorder: white(0.11)
    readonly property color glassSelectedFill: withOpacity(rgb(139, 92, 246), 0.14)
    readonly property color glassSelectedBorder: withOpacity(rgb(167, 139, 250), 0.5)

    readonly property int spacingTiny: 4
    readonly property int spacingSmall: 8
    readonly property int spacingMedium: 12
    readonly property int spacingLarge: 16
    readonly property int spacingHuge: 24

    readonly property int radiusSmall: 10
    readonly property int radiusMedium: 12
    readonly property int radiusLarge: 14
    /// More than half of any height: the ends become half circles.
    readonly property int radiusCapsule: 99

    readonly property font title: textFont(22, Font.Bold)
    readonly property font headline: textFont(15, Font.DemiBold)
    readonly property font body: textFont(13, Font.Normal)
    readonly property font bodyMedium: textFont(13, Font.Medium)
    readonly property font bodySemibold: textFont(13, Font.DemiBold)
    readonly property font bodyBold: textFont(13, Font.Bold)
    readonly property font callout: textFont(12, Font.Normal)
    readonly property font calloutSemibold: textFont(12, Font.DemiBold)
    readonly property font calloutBold: textFont(12, Font.Bold)
    readonly property font caption: textFont(11, Font.Normal)
    readonly property font captionMedium: textFont(11, Font.Medium)
    readonly property font badge: textFont(10, Font.DemiBold)
    readonly property font monospacedCaption: Qt.font({ family: "Monospace", pixelSize: 10 })

    readonly property int pressDuration: 120
    readonly property int shortDuration: 160
    readonly property int rollDuration: 280
    readonly property int spinDuration: 900

    function textFont(size: real, weight: int): font {
        return Qt.font({ family: "Inter", pixelSize: Math.round(size), weight: weight });
    }

    /// For names of files and folders. Without shaping, no letter is replaced depending on its
    /// neighbours, as the "x" in "9x1" would be.
    function fileFont(size: real, weight: int): font {
        return Qt.font({ family: "Inter", pixelSize: Math.round(size), weight: weight, preferShaping: false });
    }

    /// For byte figures. All digits have the same width; shaping would narrow the space between "·" and
    /// a digit.
    function numberFont(size: real, weight: int): font {
        return Qt.font({ family: "M PLUS 1", pixelSize: Math.round(size), weight: weight, preferShaping: false });
    }

    function withOpacity(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }

    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity);
    }

    function black(opacity: real): color {
        return Qt.rgba(0, 0, 0, opacity);
    }

    function rgb(red: int, green: int, blue: int): color {
        return Qt.rgba(red / 255, green / 255, blue / 255, 1);
    }
}
