#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// An application bundle (a folder named "*.app") inside an item of the cloud drive.
struct ICloudAppBundle
{
    std::string path;
    /// Allocated bytes of all files inside.
    std::int64_t localBytes = 0;
    /// Files inside, downloaded or not.
    std::int64_t fileCount = 0;
    /// The first file inside with at least one allocated byte. The bundle counts as downloaded as
    /// long as this file does.
    std::string probePath;

    [[nodiscard]] bool operator==(const ICloudAppBundle&) const = default;
};

/// Whether a folder of this name is an application bundle: its extension is exactly "app". A name
/// whose only dot is the first character has no extension.
[[nodiscard]] bool isAppBundleName(std::string_view name);

/// One measured entry directly inside the cloud drive's container.
struct ICloudItem
{
    /// The path that was measured, its links not resolved.
    std::string path;
    /// Allocated bytes of all files, including those in bundles.
    std::int64_t localBytes = 0;
    /// Files, including those in bundles; one that is only in the cloud counts with 0 bytes.
    std::int64_t fileCount = 0;
    /// The downloaded bundles, in the order of the walk.
    std::vector<ICloudAppBundle> apps;

    [[nodiscard]] std::int64_t appBytes() const;
    [[nodiscard]] std::int64_t appFileCount() const;
    /// Everything but the bundles, which stay downloaded. Never negative.
    [[nodiscard]] std::int64_t releasableBytes() const;
    [[nodiscard]] std::int64_t releasableFileCount() const;

    [[nodiscard]] bool operator==(const ICloudItem&) const = default;
};

/// The result of measuring one entry.
struct ICloudMeasure
{
    ICloudItem item;
    /// Whether the deadline came before the end; `item` then holds the counts until then.
    bool timedOut = false;

    [[nodiscard]] bool operator==(const ICloudMeasure&) const = default;
};

/// The bytes of all these bundles together; the largest number where the sum exceeds it.
[[nodiscard]] std::int64_t totalBytes(const std::vector<ICloudAppBundle>& apps);

} // namespace CleanCore
