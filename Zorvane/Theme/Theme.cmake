# The building blocks of all screens.
set_source_files_properties(Theme/Tokens/Theme.qml PROPERTIES QT_QML_SINGLETON_TYPE TRUE)

file(GLOB symbols RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS Resources/symbols/*.svg)

target_sources(ZorvaneWindow PRIVATE
  Theme/Painting/AuroraPainting.cpp
  Theme/Painting/GaussianBlur.cpp
  Theme/Painting/PaintedShape.cpp
  Theme/Painting/RoundedBox.cpp
  Theme/Painting/SoftShadow.cpp
  Theme/Painting/SpinnerArc.cpp
  Theme/Tokens/SymbolImages.cpp
)
# Without optimisation, drawing a shadow would take a second.
set_source_files_properties(Theme/Painting/GaussianBlur.cpp Theme/Painting/AuroraPainting.cpp
  PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Debug>:-O2> SKIP_PRECOMPILE_HEADERS ON)
# The generated registration of QML types includes their headers by file name.
target_include_directories(ZorvaneWindow PRIVATE Theme/Painting Theme/Tokens)

qt_target_qml_sources(ZorvaneWindow
  QML_FILES
    Theme/Painting/AuroraBackground.qml
    Theme/Controls/Badge.qml
    Theme/Controls/BaseButton.qml
    Theme/Controls/BusyOverlay.qml
    Theme/Controls/Dimming.qml
    Theme/Controls/FocusRing.qml
    Theme/Painting/GlassCard.qml
    Theme/Painting/GlassSurface.qml
    Theme/Painting/GradientTile.qml
    Theme/Controls/HoverHelp.qml
    Theme/Controls/KeyboardList.qml
    Theme/Controls/KeyboardRow.qml
    Theme/Controls/Label.qml
    Theme/Controls/LabelRow.qml
    Theme/Controls/LinkButton.qml
    Theme/Controls/PlainButton.qml
    Theme/Controls/PrimaryButton.qml
    Theme/Controls/RollingCharacter.qml
    Theme/Controls/RollingFigure.qml
    Theme/Controls/SecondaryButton.qml
    Theme/Controls/SelectionBox.qml
    Theme/Controls/Spinner.qml
    Theme/Controls/SymbolText.qml
    Theme/Tokens/Symbol.qml
    Theme/Tokens/Theme.qml
    Theme/Controls/ThinScrollBar.qml
  RESOURCES
    Resources/zorvane.svg
    ${symbols}
)
