# The screens of the main window.
target_sources(ZorvaneWindow PRIVATE
  Screens/Results/RingArc.cpp
)
# The generated registration of QML types includes their headers by file name.
target_include_directories(ZorvaneWindow PRIVATE Screens/Results)

qt_target_qml_sources(ZorvaneWindow
  QML_FILES
    Screens/Results/ActionBar.qml
    Screens/Results/CardButton.qml
    Screens/Results/CardSlice.qml
    Screens/Results/CategoryRow.qml
    Screens/Results/DetailsRow.qml
    Screens/Results/DonutChart.qml
    Screens/Results/ICloudBridgeCard.qml
    Screens/Results/ItemRow.qml
    Screens/FirstRun/OnboardingStep.qml
    Screens/FirstRun/OnboardingView.qml
    Screens/Scanning/ReadyScreen.qml
    Screens/Results/ResultsList.qml
    Screens/Results/ResultsRow.qml
    Screens/Results/ResultsView.qml
    Screens/ScanView.qml
    Screens/Scanning/ScanningScreen.qml
    Screens/ScreenStack.qml
    Screens/Results/SummaryPanel.qml
    Screens/FirstRun/TermsView.qml
    Screens/TopBar.qml
)
