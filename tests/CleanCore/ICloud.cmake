# The cloud drive: measuring, releasing, fetching.
zorvane_add_tests(ICloudTests
  CloudDriveFaultTests.cpp
  CloudDriveTests.cpp
  ICloudEvictorTests.cpp
  Support/CloudFolders.cpp
  Support/FailingCall.cpp
  Support/TemporaryFolder.cpp
)

zorvane_add_tests(ICloudCommandTests
  ../ZorvaneCLI/ICloudCommandTests.cpp
  Support/CloudFolders.cpp
  Support/TemporaryFolder.cpp
)
target_link_libraries(ICloudCommandTests PRIVATE ZorvaneCommands)
