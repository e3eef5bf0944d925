#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"

#include <string>
#include <vector>

namespace CleanCore {

/// The one seam to a cloud: whoever keeps the files of a folder there too, so that their downloads
/// can be released and fetched again. Paths are absolute. Every operation blocks and may be called
/// from any thread and from several at once.
class CloudDrive
{
public:
    CloudDrive() = default;
    CloudDrive(const CloudDrive&) = delete;
    CloudDrive& operator=(const CloudDrive&) = delete;
    virtual ~CloudDrive() = default;

    /// Turns the file at `path`, or every file in the folder there except those of application
    /// bundles, into placeholders: in place, with all their attributes, without content on this
    /// disk. Returns the refusals; none when everything was released.
    [[nodiscard]] virtual std::vector<CloudRefusal> release(const std::string& path) const = 0;

    /// Downloads the content of the placeholder at `path`, or of every one in the folder there.
    /// Returns the refusals; none when everything is local.
    [[nodiscard]] virtual std::vector<CloudRefusal> fetch(const std::string& path) const = 0;
};

} // namespace CleanCore
