#include "CleanCore/FileSystem/Removing/EmptyingJob.h"

#include "CleanCore/FileSystem/Removing/EmptyingWalk.h"
#include "CleanCore/FileSystem/Removing/ProtectedIdentities.h"

#include <cerrno>
#include <utility>

namespace CleanCore {

void EmptyingJob::note(int error)
{
    int none = 0;
    firstError.compare_exchange_strong(none, error);
    if (error == EIO || error == EROFS) {
        isOver.store(true);
    }
}

int EmptyingJob::reasonToKeep(const EntryStatus& entry, const EntryStatus& folder) const
{
    if (entry.isBeyondBoundaryOf(folder)) {
        return EXDEV;
    }
    if (entry.owner != limits.owner ||
        (entry.isFolder() && limits.protectedIdentities->holdsOrLeadsTo(entry.identity))) {
        return EPERM;
    }
    return 0;
}

void EmptyingJob::workOn(EmptyingPiece piece)
{
    EmptyingWalk(*this).run(std::move(piece));
}

} // namespace CleanCore
