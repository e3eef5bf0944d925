# The window itself: its frame, its menu, and what the menu opens.
qt_target_qml_sources(ZorvaneWindow
  QML_FILES
    Shell/AboutSheet.qml
    Shell/ApplicationMenu.qml
    Shell/ApplicationMenuItem.qml
    Shell/Main.qml
    Shell/ResizeEdges.qml
    Shell/SystemMoveArea.qml
    Shell/TitleBar.qml
    Shell/UpdateSheet.qml
    Shell/WindowButton.qml
)

# Without an address, the installed page is opened.
set(ZORVANE_TERMS_URL "" CACHE STRING "The address of the terms of service")
set(ZORVANE_PRIVACY_URL "" CACHE STRING "The address of the privacy policy")
set(ZORVANE_UPDATE_FEED "" CACHE STRING "The https address of the update feed; empty for none")
target_compile_definitions(ZorvaneWindow PRIVATE
  ZORVANE_TERMS_URL="${ZORVANE_TERMS_URL}"
  ZORVANE_PRIVACY_URL="${ZORVANE_PRIVACY_URL}"
  ZORVANE_UPDATE_FEED="${ZORVANE_UPDATE_FEED}"
  ZORVANE_VERSION="${PROJECT_VERSION}")

foreach(page IN ITEMS terms.html privacy.html)
  set(source "${CMAKE_CURRENT_SOURCE_DIR}/Resources/legal/${page}")
  set(copy "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/legal/${page}")
  add_custom_command(OUTPUT "${copy}" COMMAND "${CMAKE_COMMAND}" -E copy "${source}" "${copy}"
                     DEPENDS "${source}")
  list(APPEND pages "${copy}")
endforeach()
add_custom_target(LegalPages ALL DEPENDS ${pages})
add_dependencies(ZorvaneWindow LegalPages)
install(DIRECTORY Resources/legal DESTINATION "${CMAKE_INSTALL_DATADIR}/zorvane")
