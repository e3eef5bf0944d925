#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/Walking/NameList.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "CleanCore/Support/SharedWork.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <sys/types.h>

namespace CleanCore {

class ProtectedIdentities;
class TemporaryPermissions;

/// The conditions under which the entries of a tree may be removed.
struct EmptyingLimits
{
    /// Whose entries may go.
    uid_t owner = 0;
    const ProtectedIdentities* protectedIdentities = nullptr;
    /// Whether the folder being emptied is still in its place; called now and then, from any
    /// thread.
    std::function<bool()> isInPlace;

    /// The error that tells why `entry`, found in `folder`, must stay; 0 when it may go.
    [[nodiscard]] int reasonToKeep(const EntryStatus& entry, const EntryStatus& folder) const;
};

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

/// One pass over a tree, by as many walks as there are pieces. The references must outlive it.
class EmptyingJob : public SharedWork<EmptyingPiece>
{
public:
    /// `treeRoot`: the tree's own folder.
    EmptyingJob(std::shared_ptr<TaskPool> pool, unsigned helpers, const EmptyingLimits& passLimits,
                TemporaryPermissions& passPermissions, const EntryStatus& treeRoot)
        : SharedWork(std::move(pool), helpers), limits(passLimits), permissions(passPermissions),
          root(treeRoot)
    {
    }

    /// Records the first error. EIO and EROFS, which every other entry would meet too, end the
    /// work.
    void recordError(int error);

    const EmptyingLimits& limits;
    TemporaryPermissions& permissions;
    const EntryStatus root;
    std::atomic<int> firstError = 0;
    /// The work must stop: the disk fails, or the tree is no longer in its place.
    std::atomic<bool> isOver = false;
    /// Another pass is needed: folders were left because a part of them was given away or moved.
    std::atomic<bool> isIncomplete = false;

protected:
    void workOn(EmptyingPiece piece) override;
};

/// Removes everything inside one folder.
///
/// It works on descriptors only and is not recursive; it holds a bounded number of descriptors
/// whatever the depth, and memory for the names of subfolders only. These stay, with the folders
/// above them: entries of another owner, protected folders and all folders above those, other
/// mounts and devices, and whatever the system refuses to remove. Links, FIFOs, sockets and devices
/// are removed and never opened. A folder that is moved away while it is emptied is left alone from
/// then on. One that is refilled is emptied again a bounded number of times. Folders that may be
/// read and searched but not written are made writable, and are as they were if they stay.
class TreeEmptier
{
public:
    /// `helpers`: how many workers of the pool may take part beside the calling thread.
    TreeEmptier(std::shared_ptr<TaskPool> pool, unsigned helpers)
        : m_pool(std::move(pool)), m_helpers(helpers)
    {
    }

    /// Empties the folder open as `folder` (for reading). Returns 0 when nothing is left in it,
    /// else the error of the first entry that had to stay. EIO and EROFS end the work at once.
    [[nodiscard]] int empty(const FileDescriptor& folder, const EntryStatus& status,
                            const EmptyingLimits& limits, TemporaryPermissions& permissions) const;

private:
    std::shared_ptr<TaskPool> m_pool;
    unsigned m_helpers;
};

} // namespace CleanCore
