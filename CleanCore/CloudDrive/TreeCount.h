#pragma once

#include "CleanCore/CloudDrive/ICloudItem.h"
#include "CleanCore/FileSystem/FileManager.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace CleanCore {

/// The counts of a walk of one entry. Entries arrive in walk order, a folder before everything in
/// it, so that a bundle ends with the first entry outside of it.
class TreeCount
{
public:
    /// `root`: the folder that is walked, which may be a bundle itself.
    explicit TreeCount(std::string_view root);

    /// Counts one entry. Returns whether it was a file, and the figures have changed.
    bool add(const TreeEntry& entry);

    /// Ends the bundle that is open, if any. A bundle that holds no byte is not listed.
    void closeBundle();

    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::vector<ICloudAppBundle> apps;

private:
    [[nodiscard]] bool isInsideBundle(std::string_view path) const;

    // Bundles inside the open one count towards it.
    bool m_isBundleOpen = false;
    ICloudAppBundle m_bundle;
};

} // namespace CleanCore
