# Cleaning from the terminal, on homes that the tests make, as an ordinary user does it.
foreach(flow CleanChoice CleanConfinement CleanConsent CleanSampleHome Guard)
  add_test(NAME EndToEnd.${flow}
    COMMAND "${PROJECT_SOURCE_DIR}/tests/as-ordinary-user"
            "${CMAKE_CURRENT_LIST_DIR}/${flow}Tests.py" --verbose)
  set_tests_properties(EndToEnd.${flow} PROPERTIES TIMEOUT 1500 ENVIRONMENT
    "ZORVANE_CLI=$<TARGET_FILE:zorvane-cli>;PYTHONDONTWRITEBYTECODE=1")
endforeach()
