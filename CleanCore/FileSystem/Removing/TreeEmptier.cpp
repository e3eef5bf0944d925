#include "CleanCore/FileSystem/Removing/TreeEmptier.h"

#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Removing/EmptyingWalk.h"
#include "CleanCore/FileSystem/Removing/ProtectedIdentities.h"
#include "CleanCore/FileSystem/Removing/Removal.h"

#include <cerrno>
#include <utility>

namespace CleanCore {

namespace {

constexpr std::size_t passLimit = 16;

} // namespace

int EmptyingLimits::reasonToKeep(const EntryStatus& entry, const EntryStatus& folder) const
{
    if (entry.isBeyondBoundaryOf(folder)) {
        return EXDEV;
    }
    if (entry.isFolder() && protectedIdentities->holdsOrLeadsTo(entry.identity)) {
        return EPERM;
    }
    return entry.owner != owner ? foreignEntryError : 0;
}

void EmptyingJob::recordError(int error)
{
    int none = 0;
    firstError.compare_exchange_strong(none, error);
    if (error == EIO || error == EROFS) {
        isOver.store(true);
    }
}

void EmptyingJob::workOn(EmptyingPiece piece)
{
    EmptyingWalk(*this).run(std::move(piece));
}

int TreeEmptier::empty(const FileDescriptor& folder, const EntryStatus& status,
                       const EmptyingLimits& limits, TemporaryPermissions& permissions) const
{
    int error = 0;
    for (std::size_t pass = 0; pass < passLimit; ++pass) {
        // Only the first pass is shared: it leaves no more than the bare frame of the tree.
        const unsigned helpers = pass == 0 ? m_helpers : 0;
        const auto job =
            std::make_shared<EmptyingJob>(m_pool, helpers, limits, permissions, status);
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
