#include "CleanCore/FileSystem/Removing/TreeEmptier.h"

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/Removing/EmptyingJob.h"

#include <cerrno>
#include <utility>

namespace CleanCore {

namespace {

constexpr std::size_t passLimit = 16;

} // namespace

int TreeEmptier::empty(const FileDescriptor& folder, const EntryStatus& status,
                       const Limits& limits) const
{
    int error = 0;
    for (std::size_t pass = 0; pass < passLimit; ++pass) {
        // Only the first pass is shared: what it leaves is the bare frame of the tree.
        const auto job =
            std::make_shared<EmptyingJob>(m_pool, pass == 0 ? m_helpers : 0, limits, status);
        FileDescriptor root = openFolder(folder.get(), ".");
        if (!root.isOpen()) {
            return errno;
        }
        job->run({std::move(root), status, {}, 0, true});
        error = job->firstError;
        if (job->isOver || !job->isIncomplete) {
            return error;
        }
    }
    return error != 0 ? error : EBUSY;
}

} // namespace CleanCore
