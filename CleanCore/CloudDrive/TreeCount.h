#pragma once

#include "CleanCore/CloudDrive/ICloudAppBundle.h"
#include "CleanCore/FileSystem/FileManager.h"

#include <cstdint>
#include <string>
#include <vector>

namespace CleanCore {

/// What a walk of one entry has counted so far. Entries are given in walk order, a folder before
/// everything in it, so that a bundle ends with the first entry outside of it.
class TreeCount
{
public:
    /// Counts one entry. True when it was a file, which is when the figures have changed.
    bool add(const TreeEntry& entry);

    /// Ends the bundle that is open, if any. A bundle that holds no byte is not listed.
    void closeBundle();

    std::int64_t bytes = 0;
    std::int64_t files = 0;
    std::vector<ICloudAppBundle> apps;

private:
    [[nodiscard]] bool isInsideBundle(std::string_view path) const;

    // A bundle inside the open one belongs to it.
    bool m_isBundleOpen = false;
    ICloudAppBundle m_bundle;
};

} // namespace CleanCore
