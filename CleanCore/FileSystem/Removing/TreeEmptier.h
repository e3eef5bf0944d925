#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <functional>
#include <memory>
#include <sys/types.h>

namespace CleanCore {

class OwnerAccess;
class ProtectedIdentities;
class TaskPool;

/// Removes everything inside one folder.
///
/// It works on descriptors only and is not recursive; it holds a bounded number of descriptors
/// whatever the depth, and memory for the names of subfolders only. Kept, with the folders above
/// them, are: entries of another owner, protected folders and what leads to them, other mounts and
/// devices, and whatever the system refuses to remove. Links, FIFOs, sockets and devices are
/// removed and never opened. A folder that is moved away while it is emptied is left alone from
/// then on. One that is refilled is emptied again a bounded number of times. Folders of the owner
/// that lack the owner's permissions get them, and get their own back if they stay.
class TreeEmptier
{
public:
    struct Limits
    {
        /// Whose entries may be removed.
        uid_t owner = 0;
        const ProtectedIdentities* protectedIdentities = nullptr;
        OwnerAccess* ownerAccess = nullptr;
        /// Whether the folder being emptied is still where it was; asked now and then, from any
        /// thread.
        std::function<bool()> isInPlace;
    };

    /// `helpers`: how many workers of the pool may take part beside the calling thread.
    TreeEmptier(std::shared_ptr<TaskPool> pool, unsigned helpers)
        : m_pool(std::move(pool)), m_helpers(helpers)
    {
    }

    /// Empties the folder open as `folder` (for reading). Returns 0 when nothing is left in it,
    /// else the errno of the first entry that had to stay. EIO and EROFS end the work at once.
    [[nodiscard]] int empty(const FileDescriptor& folder, const EntryStatus& status,
                            const Limits& limits) const;

private:
    std::shared_ptr<TaskPool> m_pool;
    unsigned m_helpers;
};

} // namespace CleanCore
