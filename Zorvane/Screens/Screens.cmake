# The screens of the main window.
target_sources(ZorvaneWindow PRIVATE
  Screens/CardPart.cpp
  Screens/RingArc.cpp
)
# The registration of the QML types includes their headers by file name.
target_include_directories(ZorvaneWindow PRIVATE Screens)

qt_target_qml_sources(ZorvaneWindow
  QML_FILES
    Screens/ActionBar.qml
    Screens/CardSlice.qml
    Screens/CategoryRow.qml
    Screens/CleaningOverlay.qml
    Screens/DetailsRow.qml
    Screens/DonutChart.qml
    Screens/ICloudBridgeCard.qml
    Screens/ItemRow.qml
    Screens/NoticeRow.qml
    Screens/OnboardingStep.qml
    Screens/OnboardingView.qml
    Screens/ReadyScreen.qml
    Screens/ResultsList.qml
    Screens/ResultsRow.qml
    Screens/ResultsView.qml
    Screens/ScanView.qml
    Screens/ScanningScreen.qml
    Screens/ScreenStack.qml
    Screens/ScreenText.qml
    Screens/SummaryPanel.qml
    Screens/TermsView.qml
    Screens/TopBar.qml
)
