#include "CleanCore/FileSystem/Removing/ProtectedIdentities.h"

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Walking/Climb.h"

namespace CleanCore {

ProtectedIdentities::ProtectedIdentities(const std::string& home,
                                         std::span<const std::string> protectedFolders)
{
    const FileDescriptor homeFolder = holdFolderThroughLinks(home);
    if (homeFolder.isOpen()) {
        addAncestors(homeFolder.get());
    }
    const std::set<Key> homeAndAbove = m_leading;
    for (const std::string& path : protectedFolders) {
        const FileDescriptor folder = holdFolderThroughLinks(path);
        EntryStatus status;
        if (!folder.isOpen() || readStatus(folder.get(), "", status) != 0) {
            continue;
        }
        const Key key(status.identity.device, status.identity.inode);
        if (!homeAndAbove.contains(key)) {
            m_protected.insert(key);
            addAncestors(folder.get());
        }
    }
}

void ProtectedIdentities::addAncestors(int folder)
{
    // A folder that cannot be read ends the climb; those below it are recorded all the same.
    static_cast<void>(climb(folder, [&](const EntryIdentity& identity) {
        m_leading.emplace(identity.device, identity.inode);
        return true;
    }));
}

bool ProtectedIdentities::holds(const EntryIdentity& identity) const
{
    return m_protected.contains({identity.device, identity.inode});
}

bool ProtectedIdentities::holdsOrLeadsTo(const EntryIdentity& identity) const
{
    return m_leading.contains({identity.device, identity.inode});
}

bool ProtectedIdentities::enclose(int folder) const
{
    bool isEnclosed = false;
    const bool isKnown = climb(folder, [&](const EntryIdentity& identity) {
        isEnclosed = holds(identity);
        return !isEnclosed;
    });
    return isEnclosed || !isKnown;
}

} // namespace CleanCore
