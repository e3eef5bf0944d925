#pragma once

#include "CleanCore/FileSystem/Removing/TreeEmptier.h"
#include "CleanCore/FileSystem/Walking/NameList.h"
#include "CleanCore/Support/SharedWork.h"

#include <atomic>
#include <cstddef>
#include <memory>

namespace CleanCore {

/// A folder to be emptied: wholly, or only of the subfolders that are named.
struct EmptyingPiece
{
    FileDescriptor folder;
    EntryStatus status;
    NameList subfolders;
    /// How many folders lie between this one and the root of the tree.
    std::size_t depth = 0;
    bool isWhole = false;
};

/// One pass over a tree that is emptied, by as many walks as there are pieces. `limits` must
/// outlive it.
class EmptyingJob : public SharedWork<EmptyingPiece>
{
public:
    /// `treeRoot`: the tree's own folder.
    EmptyingJob(std::shared_ptr<TaskPool> pool, unsigned helpers,
                const TreeEmptier::Limits& passLimits, const EntryStatus& treeRoot)
        : SharedWork(std::move(pool), helpers), limits(passLimits), root(treeRoot)
    {
    }

    /// Keeps the first error. EIO and EROFS, which every other entry would meet too, end the work.
    void note(int error);

    /// Why an entry must stay, as an errno; 0 when it may go.
    [[nodiscard]] int reasonToKeep(const EntryStatus& entry, const EntryStatus& folder) const;

    const TreeEmptier::Limits& limits;
    const EntryStatus root;
    std::atomic<int> firstError = 0;
    /// Nothing more may be done: the disk fails, or the tree is no longer where it was.
    std::atomic<bool> isOver = false;
    /// Another pass is needed: folders were left because a part of them was given away or moved.
    std::atomic<bool> isIncomplete = false;

protected:
    void workOn(EmptyingPiece piece) override;
};

} // namespace CleanCore
