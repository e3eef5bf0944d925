#include "CleanCore/Reclaim/Extents.h"

#include <cstddef>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <map>
#include <new>
#include <sys/ioctl.h>

namespace CleanCore {

namespace {

constexpr std::size_t extentsPerPage = 128;
constexpr std::uint32_t inlineFlags = FIEMAP_EXTENT_DATA_INLINE | FIEMAP_EXTENT_DATA_TAIL;

/// Sorts the extents of one file.
class Sorting
{
public:
    explicit Sorting(FileSpace& space) : m_space(space) {}

    void add(const fiemap_extent& extent)
    {
        const auto length = static_cast<std::int64_t>(extent.fe_length);
        if ((extent.fe_flags & inlineFlags) != 0) {
            m_space.hasInlineData = true;
            return;
        }
        const bool isShared = (extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0;
        const bool isCompressed = (extent.fe_flags & FIEMAP_EXTENT_ENCODED) != 0;
        if (!isShared && !isCompressed) {
            m_space.plainBytes += length;
            noteReplaced(extent);
        } else if (isShared && !isCompressed && follows(extent)) {
            m_space.extents.back().length += length;
        } else {
            m_space.extents.push_back({extent.fe_physical, length, isShared, isCompressed});
        }
    }

private:
    /// Whether it goes on where the last shared extent ends.
    [[nodiscard]] bool follows(const fiemap_extent& extent) const
    {
        if (m_space.extents.empty() || m_space.extents.back().isCompressed) {
            return false;
        }
        const FileExtent& last = m_space.extents.back();
        return last.start + static_cast<std::uint64_t>(last.length) == extent.fe_physical;
    }

    /// Two parts of the file that lie as far from each other on the volume as in the file were
    /// written as one.
    void noteReplaced(const fiemap_extent& extent)
    {
        const std::uint64_t end = extent.fe_physical + extent.fe_length;
        const auto [place, isNew] = m_ends.try_emplace(extent.fe_physical - extent.fe_logical, end);
        if (!isNew) {
            m_space.replacedBytes += static_cast<std::int64_t>(extent.fe_physical - place->second);
            place->second = end;
        } else if (m_ends.size() > endLimit) {
            m_ends.clear();
        }
    }

    static constexpr std::size_t endLimit = 1000;

    FileSpace& m_space;
    /// Where the last plain extent ends that lies at a distance from its place in the file.
    std::map<std::uint64_t, std::uint64_t> m_ends;
};

} // namespace

bool readExtents(int file, const std::stop_token& stop, FileSpace& space)
{
    // The kernel puts the extents behind the request.
    alignas(fiemap) std::byte page[sizeof(fiemap) + extentsPerPage * sizeof(fiemap_extent)];
    Sorting sorting(space);
    std::uint64_t start = 0;
    while (!stop.stop_requested()) {
        auto* const request = new (page) fiemap{};
        request->fm_start = start;
        request->fm_length = FIEMAP_MAX_OFFSET - start;
        // What was written over and not flushed would still show the extents before that.
        request->fm_flags = FIEMAP_FLAG_SYNC;
        request->fm_extent_count = extentsPerPage;
        if (::ioctl(file, FS_IOC_FIEMAP, request) != 0) {
            return false;
        }
        for (std::uint32_t i = 0; i < request->fm_mapped_extents; ++i) {
            const fiemap_extent& extent = request->fm_extents[i];
            if ((extent.fe_flags & FIEMAP_EXTENT_DELALLOC) != 0) {
                // Room beyond the end of the file that is reserved and was not needed.
                space.plainBytes += static_cast<std::int64_t>(extent.fe_length);
            } else if ((extent.fe_flags & FIEMAP_EXTENT_UNKNOWN) != 0) {
                return false;
            } else {
                sorting.add(extent);
            }
            start = extent.fe_logical + extent.fe_length;
            if ((extent.fe_flags & FIEMAP_EXTENT_LAST) != 0) {
                return true;
            }
        }
        // A file without data, or with a hole at its end, has no last extent.
        if (request->fm_mapped_extents == 0) {
            return true;
        }
    }
    return false;
}

} // namespace CleanCore
