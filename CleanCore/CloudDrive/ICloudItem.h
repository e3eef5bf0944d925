#pragma once

#include "CleanCore/CloudDrive/ICloudAppBundle.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CleanCore {

/// One measured entry directly inside the cloud drive's container.
struct ICloudItem
{
    /// The path that was measured, its links not resolved.
    std::string path;
    /// Allocated bytes of all files, those of bundles included.
    std::int64_t localBytes = 0;
    /// Files, those of bundles included; one that is only in the cloud counts with 0 bytes.
    std::int64_t fileCount = 0;
    /// The downloaded bundles, in the order of the walk.
    std::vector<ICloudAppBundle> apps;

    [[nodiscard]] std::int64_t appBytes() const;
    [[nodiscard]] std::int64_t appFileCount() const;
    /// What a release can give back: everything but the bundles, which stay downloaded. Never
    /// negative.
    [[nodiscard]] std::int64_t releasableBytes() const;
    [[nodiscard]] std::int64_t releasableFileCount() const;

    [[nodiscard]] bool operator==(const ICloudItem&) const = default;
};

} // namespace CleanCore
