zorvane_add_tests(RulesTests
  Rules/ForeignCatalogTests.cpp
  Rules/PathExpanderTests.cpp
  Rules/RulesCatalogTests.cpp
  Rules/TextTableTests.cpp
  Support/ByteCountTests.cpp
  Support/TemporaryFolder.cpp
  Support/TextEqualityTests.cpp
)
add_test(NAME Catalog.HasNoFindings COMMAND "${PROJECT_SOURCE_DIR}/tools/check-catalog")
