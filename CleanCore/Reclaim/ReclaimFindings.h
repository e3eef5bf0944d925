#pragma once

#include "CleanCore/Reclaim/Reclaim.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace CleanCore {

/// A file with several names, some of them in the item.
struct LinkedFile
{
    std::uint64_t inode = 0;
    /// Names in the item, and altogether.
    std::uint32_t names = 0;
    std::uint32_t linkCount = 0;
    std::int64_t allocatedBytes = 0;
    /// What comes back beside the extents below, and whether that is certain.
    std::int64_t plainBytes = 0;
    bool isCertain = true;
    ReclaimCause doubt = ReclaimCause::unknown;
    std::int64_t inlineBytes = 0;

    /// Takes in what was found through other names of the same file.
    void addNamesOf(const LinkedFile& other)
    {
        names += other.names;
        if (isCertain) {
            isCertain = other.isCertain;
            doubt = other.doubt;
        }
    }
};

/// A shared or compressed extent.
struct ReclaimExtent
{
    std::uint64_t start = 0;
    std::int64_t length = 0;
    /// The inode of the file if it has several names, else 0.
    std::uint64_t linkedInode = 0;
    /// An extent whose cause is `compressed` gives back one block at least, others nothing.
    ReclaimCause cause = ReclaimCause::sharedExtents;
    bool isCompressed = false;
};

/// The parts of an item that do not come back for certain.
struct ReclaimDetails
{
    std::uint64_t device = 0;
    /// See VolumeTraits::id.
    std::uint64_t volume = 0;
    /// Sorted by inode, each inode once.
    std::vector<LinkedFile> linked;
    std::vector<ReclaimExtent> extents;
    /// Bytes that may come back.
    BytesByCause doubtful = {};
    /// Bytes that do not.
    BytesByCause lost = {};
    /// Some names or extents had no room and are only in `doubtful`.
    bool isCutShort = false;
    std::vector<std::string> programs;
};

/// The findings about one item, kept so that the gain of any choice of items is a sum. Most items
/// are wholly their own and have no details.
struct ReclaimFindings
{
    bool isExamined = false;
    std::int64_t certainBytes = 0;
    /// What the file system may give back on top for the records of the entries.
    std::int64_t recordBytes = 0;
    std::shared_ptr<const ReclaimDetails> details;
};

} // namespace CleanCore
