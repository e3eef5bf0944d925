# The cloud drive: measuring, releasing, fetching.
zorvane_add_tests(ICloudTests
  CloudDriveTests.cpp
  Support/CloudFolders.cpp
  Support/TemporaryFolder.cpp
)
