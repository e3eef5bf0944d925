#pragma once

#include "CleanCore/CloudDrive/CloudRequests.h"
#include "CleanCore/CloudDrive/ICloudItem.h"

#include <chrono>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace CleanCore {

/// How it is found out what of a drive's entries is downloaded.
enum class CloudMeasuring {
    /// By the allocated bytes of the files.
    byAllocatedBytes,
    /// By CloudDrive::measure(), entry by entry.
    byEntry,
    /// The same, best of all entries of a folder at once.
    together,
};

/// The one seam to a cloud: whoever keeps the files of some folders there too, so that their
/// downloads can be released and fetched again. Paths are absolute. Every operation blocks and may
/// be called from any thread and from several at once; none throws or reports an error.
///
/// A drive releases only what it has proved to be safe elsewhere, by its own means; everything else
/// it refuses, with the reason, and leaves untouched.
class CloudDrive
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    CloudDrive() = default;
    CloudDrive(const CloudDrive&) = delete;
    CloudDrive& operator=(const CloudDrive&) = delete;
    virtual ~CloudDrive() = default;

    /// What people call it.
    [[nodiscard]] virtual std::string name() const = 0;

    /// Finds the drive's folders, in a fixed order. It may take seconds; a stop request ends it.
    [[nodiscard]] virtual std::vector<CloudContainer>
    containers(const std::stop_token& stop) const = 0;

    /// Whether applications (folders named "*.app") are never released.
    [[nodiscard]] virtual bool keepsApplications() const { return false; }

    /// Whether a released file is fetched when a program opens it.
    [[nodiscard]] virtual bool fetchesWhenOpened() const { return true; }

    [[nodiscard]] virtual CloudMeasuring measuring() const
    {
        return CloudMeasuring::byAllocatedBytes;
    }

    /// Measures unless it is done by the allocated bytes: one result for each of `paths`, entries
    /// of `container`, in their order. Content that several of them share counts for one of them. A
    /// stop request ends it like the deadline.
    [[nodiscard]] virtual std::vector<ICloudMeasure> measure(const std::string& /*container*/,
                                                             std::span<const std::string> /*paths*/,
                                                             std::optional<Deadline> /*deadline*/,
                                                             const std::stop_token& /*stop*/) const
    {
        return {};
    }

    /// Releases the file at `path`, or every file in the folder there that the drive does not
    /// keep: they stay in their place as placeholders without content on this disk. A stop request
    /// may end it early; what was not reached stays as it is.
    [[nodiscard]] virtual CloudReply release(const std::string& path,
                                             const CloudWatch& watch) const = 0;

    /// Downloads the content of the placeholder at `path`, or of every one in the folder there. A
    /// file that was released under this name and has another one since counts as well.
    [[nodiscard]] virtual CloudReply fetch(const std::string& path,
                                           const CloudWatch& watch) const = 0;

    /// Waits until every one of `pending`, of this drive's replies, is done, the drive's time limit
    /// for it is over, or a stop is requested. Returns as refused what is not done.
    [[nodiscard]] virtual CloudReply await(std::span<const CloudPending> /*pending*/,
                                           const CloudWatch& /*watch*/) const
    {
        return {};
    }
};

} // namespace CleanCore
