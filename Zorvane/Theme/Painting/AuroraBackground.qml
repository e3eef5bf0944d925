import Zorvane

/// The window's background in the palette's colours.
AuroraPainting {
    baseColor: Theme.background
    violet: Theme.meshViolet
    indigo: Theme.meshIndigo
    teal: Theme.meshTeal
}
