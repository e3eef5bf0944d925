zorvane_add_tests(CleaningTests
  Cleaning/CleanEngineLinkTests.cpp
  Cleaning/CleanEngineTests.cpp
  Cleaning/CleaningReportTests.cpp
  Cleaning/SafetyGuardModelTests.cpp
  Cleaning/SafetyGuardTests.cpp
  Cleaning/SelectionStateTests.cpp
  Cleaning/TrashRecordTests.cpp
  Support/CleanableHome.cpp
  Support/GuardModel.cpp
  Support/TemporaryFolder.cpp
)

zorvane_add_tests(CleaningOwnershipTests AS_ROOT
  Cleaning/OwnershipTests.cpp
  Support/CleanableHome.cpp
  Support/TemporaryFolder.cpp
)
