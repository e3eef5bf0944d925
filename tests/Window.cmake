find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

# The window in all its states, for the tests and for whoever wants to look at it.
file(GLOB support CONFIGURE_DEPENDS Zorvane/Support/*.cpp Zorvane/Scenes/*.cpp)
list(FILTER support EXCLUDE REGEX "Main.cpp$")
if(NOT ZORVANE_WINDOW_TESTS)
  list(FILTER support INCLUDE REGEX "ScriptedApplication.cpp$")
endif()
add_library(WindowTestSupport STATIC ${support})
target_link_libraries(WindowTestSupport PUBLIC TestSupport ZorvaneWindow Qt6::Test
                      PRIVATE Zorvane::Warnings)
target_precompile_headers(WindowTestSupport PRIVATE <gmock/gmock.h> <QAbstractItemModelTester>
                          <QQmlApplicationEngine> <QQuickWindow> <QSignalSpy> <functional> <map>)

zorvane_add_tests(StateTests SUPPORT WindowTestSupport SOURCES
  Zorvane/State/*.cpp Zorvane/Desktop/*.cpp Zorvane/Support/EventLoopMain.cpp)
if(NOT ZORVANE_WINDOW_TESTS)
  return()
endif()

zorvane_add_tests(WindowTests SUPPORT WindowTestSupport SOURCES
  Zorvane/*Tests.cpp Zorvane/Support/WindowTestMain.cpp)
target_link_libraries(WindowTests PRIVATE ZorvaneWindowplugin)

# Once more as the program draws where there is a graphics card.
add_test(NAME DrawnWithOpenGL COMMAND "${launcher}" "${CMAKE_CURRENT_SOURCE_DIR}/with-display"
         "$<TARGET_FILE:WindowTests>" --opengl "--gtest_filter=Scenes/*Warning/results*:Sheets.TheKeyboard*")
set_tests_properties(DrawnWithOpenGL PROPERTIES TIMEOUT 120)

# The window as a person uses it, on a display of the tests' own.
add_library(confined MODULE EndToEnd/Window/confined.c)
set_target_properties(confined PROPERTIES PREFIX "")
foreach(flow Clean FirstRun GitAnnex ICloud Scan SyncClient)
  zorvane_add_script_test(Window.${flow} EndToEnd/Window/${flow}Tests.py
    "ZORVANE_CLI=$<TARGET_FILE:zorvane-cli>" "ZORVANE_WINDOW=$<TARGET_FILE:zorvane>"
    "ZORVANE_CONFINED=$<TARGET_FILE:confined>")
endforeach()

zorvane_add_script_test(Window.GitAnnexWhole EndToEnd/Window/GitAnnexTests.py
  "ZORVANE_CLI=$<TARGET_FILE:zorvane-cli>" "ZORVANE_WINDOW=$<TARGET_FILE:zorvane>"
  "ZORVANE_CONFINED=$<TARGET_FILE:confined>" ZORVANE_RELIABILITY=long)
set_tests_properties(Window.GitAnnexWhole PROPERTIES LABELS reliability-long TIMEOUT 900)

# What an installation puts where, and whether it works from there.
set(installed "${PROJECT_BINARY_DIR}/installed")
add_test(NAME Install COMMAND "${CMAKE_COMMAND}" --install "${PROJECT_BINARY_DIR}" --prefix "${installed}")
add_test(NAME Uninstall COMMAND "${CMAKE_COMMAND}" -E rm -rf "${installed}")
zorvane_add_script_test(Window.Installation EndToEnd/Window/InstallationTests.py
  "ZORVANE_INSTALLED=${installed}" "ZORVANE_CLI=${installed}/bin/zorvane-cli"
  "ZORVANE_WINDOW=${installed}/bin/zorvane" "ZORVANE_CONFINED=$<TARGET_FILE:confined>")
set_tests_properties(Install PROPERTIES FIXTURES_SETUP installation)
set_tests_properties(Uninstall PROPERTIES FIXTURES_CLEANUP installation)
set_tests_properties(Window.Installation PROPERTIES FIXTURES_REQUIRED installation)
