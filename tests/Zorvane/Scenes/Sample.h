#pragma once

#include "tests/Zorvane/Support/MainWindow.h"

#include <cstdint>
#include <limits>
#include <string>

/// What the scenes find on the disk.
namespace ZorvaneTests::Sample {

constexpr std::int64_t kB = 1'000;
constexpr std::int64_t MB = 1'000 * kB;
constexpr std::int64_t GB = 1'000 * MB;
constexpr std::int64_t PB = 1'000'000 * GB;
/// 9.22 EB, the largest figure that there is.
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

/// Gives the application the permission to see the disk.
void grantAccess(ScriptedApplication& application);

/// Adds what is found in a home where somebody develops software.
void addTypicalAreas(ScriptedApplication& application);

/// Names as nobody would choose them: line ends, a right-to-left override, 300 characters, bytes
/// that are no text.
[[nodiscard]] Strings hostileNames();

/// A title of an area as a catalog from a file might have it.
[[nodiscard]] std::string longTitle();

/// Adds an area with long texts, to review unless it is one of caches.
void addLongTitled(ScriptedApplication& application, const std::string& id, const Sizes& items);

/// Adds four folders of the cloud drive, the largest named "Photos".
void addTypicalCloud(ScriptedApplication& application);

} // namespace ZorvaneTests::Sample
