# The cloud drive: measuring, releasing, fetching.
zorvane_add_tests(ICloudTests
  CloudDriveTests.cpp
  ICloudEvictorTests.cpp
  Support/CloudFolders.cpp
  Support/TemporaryFolder.cpp
)
