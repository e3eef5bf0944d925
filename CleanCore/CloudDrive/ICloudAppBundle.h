#pragma once

#include <cstdint>
#include <string>

namespace CleanCore {

/// An application bundle (a folder named "*.app") inside an item of the cloud drive.
struct ICloudAppBundle
{
    std::string path;
    /// Allocated bytes of all files inside.
    std::int64_t localBytes = 0;
    /// Files inside, downloaded or not.
    std::int64_t fileCount = 0;
    /// The first file inside that held at least one byte: it tells whether the bundle is still
    /// downloaded.
    std::string probePath;

    [[nodiscard]] bool operator==(const ICloudAppBundle&) const = default;
};

} // namespace CleanCore
