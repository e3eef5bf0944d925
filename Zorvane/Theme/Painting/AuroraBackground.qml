import Zorvane

/// The background of the window.
AuroraPainting {
    baseColor: Theme.background
    violet: Theme.meshViolet
    indigo: Theme.meshIndigo
    teal: Theme.meshTeal
}
