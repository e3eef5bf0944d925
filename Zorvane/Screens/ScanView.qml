import QtQuick
import Zorvane

/// The background and, on it, the screen of the current phase.
FocusScope {
    id: view

    required property AppState appState
    required property Models models
    property url termsURL
    property url privacyURL

    /// By name of the phase.
    readonly property var screens: ({
        termsAcceptance: terms,
        needsPermission: onboarding,
        ready: ready,
        scanning: scanning,
        results: results
    })

    focus: true
    implicitWidth: loader.implicitWidth
    implicitHeight: loader.implicitHeight

    AuroraBackground {
        anchors.fill: parent
    }

    Loader {
        id: loader

        anchors.fill: parent
        focus: true
        sourceComponent: view.screens[view.appState.phaseName]
    }

    // Loaders of Qt 6.4 cannot create bound components, so the linter cannot resolve `view`.
    // qmllint disable unqualified

    Component {
        id: terms

        TermsView {
            focus: true
            appState: view.appState
            termsURL: view.termsURL
            privacyURL: view.privacyURL
        }
    }

    Component {
        id: onboarding

        OnboardingView {
            focus: true
            appState: view.appState
        }
    }

    Component {
        id: ready

        ReadyScreen {
            focus: true
            appState: view.appState
        }
    }

    Component {
        id: scanning

        ScanningScreen {
            focus: true
            appState: view.appState
            figures: view.models.figures
        }
    }

    Component {
        id: results

        ResultsView {
            focus: true
            appState: view.appState
            models: view.models
        }
    }
}
