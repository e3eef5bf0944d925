#pragma once

#include "CleanCore/FileSystem/Walking/FolderStack.h"

#include <string>

namespace CleanCore {

class EmptyingJob;
class OwnerAccess;

/// The single steps in the folders of a tree that is emptied. Each is tried as it is; where the
/// folder lacks its owner's permissions it is tried once more with them lent, and they are to be
/// taken back from what stays. Steps return an errno, 0 for success.
class LendingSteps
{
public:
    using Folder = FolderStack::Level;

    /// `job` must outlive it.
    explicit LendingSteps(const EmptyingJob& job);

    /// Opens a subfolder for reading, through no link, unless the job has a reason to keep it.
    [[nodiscard]] int openSubfolder(const Folder& parent, const std::string& name,
                                    FileDescriptor& folder, EntryStatus& status) const;
    [[nodiscard]] int statusOf(const Folder& folder, const char* name, EntryStatus& status) const;
    [[nodiscard]] int unlink(const Folder& folder, const char* name, int flags) const;

    /// Gives a folder that stays its own permissions back.
    void takeBack(const Folder& folder) const;
    /// The same for a subfolder that was left.
    void takeBack(const Folder& parent, const std::string& name) const;
    /// Gives every folder that can be reached its own permissions back, up from the top and, if the
    /// way breaks off at a folder that was moved, down from the root. The next folder is opened
    /// first: what is taken back may be the permission to look for it.
    void takeAllBack(FolderStack& stack) const;

private:
    const EmptyingJob& m_job;
    OwnerAccess& m_ownerAccess;
};

} // namespace CleanCore
