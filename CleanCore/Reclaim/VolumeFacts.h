#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

/// What a file system tells about its space.
struct VolumeTraits
{
    enum class Allocation {
        /// A file's allocated size is what its removal gives back.
        exact,
        /// The file's extents tell, which may be shared or compressed.
        byExtents,
        /// The file system does not tell.
        untold,
    };

    Allocation allocation = Allocation::untold;
    /// The same for all folders whose extents can be the same.
    std::uint64_t id = 0;
    /// The same for all folders that draw on the same free space.
    std::uint64_t spaceId = 0;
    /// What is allocated is a multiple of this; a rest of an allocated size lies in the file
    /// system's own records.
    std::int64_t blockBytes = 1;
    /// What the file system may give back for each entry beside its blocks.
    std::int64_t bytesOfRecord = 0;
    /// Whether an extent stays whole until the last part of it that is used goes.
    bool keepsExtentsWhole = false;
    /// Whether it gives space back a moment after the removal.
    bool freesLate = false;
    /// Files on which somebody holds a lease. Opening one would make the holder give it up.
    std::set<std::uint64_t> leasedInodes = {};
};

/// A part of a file's data that is shared or compressed.
struct FileExtent
{
    /// Where it lies on the volume.
    std::uint64_t start = 0;
    /// The length of the data, in bytes; if it is compressed, before that.
    std::int64_t length = 0;
    bool isShared = false;
    bool isCompressed = false;

    [[nodiscard]] bool operator==(const FileExtent&) const = default;
};

/// What a file system tells about the space of one file.
struct FileSpace
{
    /// False: the extents, or whether somebody has the file open, could not be found out.
    bool isTold = true;
    bool isOpenElsewhere = false;
    /// Data that lies inside the file system's own records.
    bool hasInlineData = false;
    /// What is neither shared nor compressed nor inline; only told by extents.
    std::int64_t plainBytes = 0;
    /// Data that was written over or cut out in the middle of plain extents, which may still occupy
    /// its place if the file system keeps extents whole.
    std::int64_t replacedBytes = 0;
    std::vector<FileExtent> extents;
};

/// A file by its inode, on one device.
struct FileKey
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    // clang-tidy 14 takes the comparison with 0 for one with a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    [[nodiscard]] auto operator<=>(const FileKey&) const = default;
};

/// The seam to what file systems know beyond the sizes of their entries. Safe from any thread.
class VolumeFacts
{
public:
    VolumeFacts() = default;
    VolumeFacts(const VolumeFacts&) = delete;
    VolumeFacts& operator=(const VolumeFacts&) = delete;
    virtual ~VolumeFacts() = default;

    /// The traits of the file system that holds the open folder.
    [[nodiscard]] virtual VolumeTraits traits(int folder) const = 0;

    /// Finds out about the regular file `name` in the open folder, which occupies
    /// `allocatedBytes` by its attributes, and puts it into `space`. The
    /// caller sees to it that this process does not look at the same inode twice at the same time,
    /// which would count as open elsewhere. A stop request makes the answer untold.
    virtual void readSpace(int folder, const char* name, std::int64_t allocatedBytes,
                           const VolumeTraits& traits, const std::stop_token& stop,
                           FileSpace& space) const = 0;

    /// The names of other programs that have these files open, as far as they may be known.
    [[nodiscard]] virtual std::map<FileKey, std::set<std::string>>
    programsUsing(const std::set<FileKey>& files) const = 0;

    /// Has the file system of the open folder carry out what it has put off. Blocks, possibly for
    /// long. `after` a removal; before one only what is needed for a true reading.
    virtual void settle(int folder, bool after) const = 0;
};

} // namespace CleanCore
