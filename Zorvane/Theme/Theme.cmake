# The looks that every screen is made of.
set_source_files_properties(Theme/Theme.qml PROPERTIES QT_QML_SINGLETON_TYPE TRUE)

file(GLOB symbols RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS Resources/symbols/*.svg)

target_sources(ZorvaneWindow PRIVATE
  Theme/AuroraPainting.cpp
  Theme/DiagonalGradient.cpp
  Theme/GaussianBlur.cpp
  Theme/PaintedShape.cpp
  Theme/RoundedBox.cpp
  Theme/SoftShadow.cpp
  Theme/SpinnerArc.cpp
  Theme/SymbolImages.cpp
)
# Without optimisation each shadow would take a second, and every debug build and test wait for it.
set_source_files_properties(Theme/GaussianBlur.cpp Theme/AuroraPainting.cpp
  PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Debug>:-O2>)
# The registration of the QML types includes their headers by file name.
target_include_directories(ZorvaneWindow PRIVATE Theme)

qt_target_qml_sources(ZorvaneWindow
  QML_FILES
    Theme/AuroraBackground.qml
    Theme/Badge.qml
    Theme/BaseButton.qml
    Theme/FocusRing.qml
    Theme/GlassCard.qml
    Theme/GlassSurface.qml
    Theme/GradientTile.qml
    Theme/HoverHelp.qml
    Theme/LabelRow.qml
    Theme/LinkButton.qml
    Theme/PlainButton.qml
    Theme/PrimaryButton.qml
    Theme/RollingCharacter.qml
    Theme/RollingFigure.qml
    Theme/SecondaryButton.qml
    Theme/SelectionBox.qml
    Theme/Spinner.qml
    Theme/Symbol.qml
    Theme/Theme.qml
    Theme/ThinScrollBar.qml
  RESOURCES
    Resources/zorvane.svg
    ${symbols}
)
