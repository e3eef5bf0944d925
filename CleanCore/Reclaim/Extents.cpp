#include "CleanCore/Reclaim/Extents.h"

#include <cstddef>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <new>
#include <sys/ioctl.h>

namespace CleanCore {

namespace {

constexpr std::size_t extentsPerPage = 128;
constexpr std::uint32_t inlineFlags = FIEMAP_EXTENT_DATA_INLINE | FIEMAP_EXTENT_DATA_TAIL;

void add(const fiemap_extent& extent, FileSpace& space)
{
    const auto length = static_cast<std::int64_t>(extent.fe_length);
    if ((extent.fe_flags & inlineFlags) != 0) {
        space.hasInlineData = true;
        return;
    }
    const bool isShared = (extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0;
    const bool isCompressed = (extent.fe_flags & FIEMAP_EXTENT_ENCODED) != 0;
    if (!isShared && !isCompressed) {
        space.plainBytes += length;
        return;
    }
    if (!space.extents.empty()) {
        FileExtent& last = space.extents.back();
        const bool follows =
            last.start + static_cast<std::uint64_t>(last.length) == extent.fe_physical;
        if (follows && last.isShared == isShared && !last.isCompressed && !isCompressed) {
            last.length += length;
            return;
        }
    }
    space.extents.push_back({extent.fe_physical, length, isShared, isCompressed});
}

} // namespace

bool readExtents(int file, const std::stop_token& stop, FileSpace& space)
{
    // The kernel puts the extents behind the request.
    alignas(fiemap) std::byte page[sizeof(fiemap) + extentsPerPage * sizeof(fiemap_extent)];
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
                add(extent, space);
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
