#pragma once

#include "tests/Zorvane/Support/MainWindow.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

/// What the scenes find on the disk.
namespace ZorvaneTests::Sample {

using Sizes = std::vector<std::pair<std::string, std::int64_t>>;

constexpr std::int64_t kB = 1'000;
constexpr std::int64_t MB = 1'000 * kB;
constexpr std::int64_t GB = 1'000 * MB;
constexpr std::int64_t PB = 1'000'000 * GB;
/// 9.22 EB, the largest figure that there is.
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

/// Gives the application the permission to see the disk.
void grantAccess(ScriptedApplication& application);

/// Adds an area with these items in the folder `base`.
void addFolder(ScriptedApplication& application, const std::string& id, CleanCore::RuleTier tier,
               const std::string& base, const Sizes& items);

/// Adds what is found in a home where somebody develops software.
void addTypicalAreas(ScriptedApplication& application);

/// Names as nobody would choose them: line ends, a right-to-left override, 300 characters, bytes
/// that are no text.
[[nodiscard]] Strings hostileNames();

/// A title of an area as a catalog from a file might have it.
[[nodiscard]] std::string longTitle();

/// Adds a folder of the cloud drive that holds these files and applications.
void addCloudFolder(ScriptedApplication& application, const std::string& name,
                    std::int64_t fileCount, std::int64_t bytes, const Sizes& apps = {});

/// Adds four folders of the cloud drive, the largest named "Photos".
void addTypicalCloud(ScriptedApplication& application);

/// The path of an entry of the cloud drive.
[[nodiscard]] std::string cloudPath(const std::string& name);

} // namespace ZorvaneTests::Sample
