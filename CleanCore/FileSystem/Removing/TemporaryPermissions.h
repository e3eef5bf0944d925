#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace CleanCore {

/// The permission to write that folders of the owner lack while their tree is removed (package
/// stores are shipped read-only): granted when an unlink fails for want of it, and taken back on
/// every folder that stays. The permissions to read and to search are never granted: nobody can
/// have seen what lies behind them. Serves one removal; safe from any thread.
class TemporaryPermissions
{
public:
    using Folder = FolderStack::Level;

    /// Like unlinkat(2) without a change first, and once more after one. Returns an errno, 0 for
    /// success.
    [[nodiscard]] int unlink(const Folder& folder, const char* name, int flags);

    /// Restores the permissions of the folder open as `folder`, if any were granted.
    void restore(int folder, const EntryStatus& status);
    /// Restores the permissions of a subfolder that stays.
    void restore(const Folder& parent, const std::string& name);
    /// Leaves the levels of `stack` and restores the permissions of each, up from the top; where
    /// the way breaks off at a folder that was moved, also of those above it, down from the root.
    void restoreAll(FolderStack& stack);

private:
    /// False when the folder has the permission already or the system refuses, and for one whose
    /// set-group-id bit the system would drop for good.
    [[nodiscard]] bool grant(int folder, const EntryStatus& status);
    [[nodiscard]] bool hasGranted() const;
    void restoreFromRoot(FolderStack& stack);

    mutable std::mutex m_mutex;
    /// The former modes, by device and inode.
    std::map<std::pair<std::uint64_t, std::uint64_t>, mode_t> m_formerModes;
};

} // namespace CleanCore
