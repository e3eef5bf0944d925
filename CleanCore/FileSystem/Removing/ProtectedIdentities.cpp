#include "CleanCore/FileSystem/Removing/ProtectedIdentities.h"

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <fcntl.h>

namespace CleanCore {

namespace {

constexpr int openFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

enum class Step { goOn, stop };

/// Calls `visit` with the identity of the folder and then of each above it up to the root, until it
/// says stop. False when a folder could not be read.
template <typename Visit>
bool climb(int start, Visit visit)
{
    FileDescriptor held;
    int folder = start;
    EntryStatus status;
    if (readStatus(folder, "", status) != 0) {
        return false;
    }
    for (;;) {
        if (visit(status.identity) == Step::stop) {
            return true;
        }
        FileDescriptor parent(::openat(folder, "..", openFlags));
        EntryStatus above;
        if (!parent.isOpen() || readStatus(parent.get(), "", above) != 0) {
            return false;
        }
        // The root is its own parent; a mount's root is not, since ".." leaves the mount.
        if (above.identity == status.identity && above.mountId == status.mountId) {
            return true;
        }
        status = above;
        held = std::move(parent);
        folder = held.get();
    }
}

} // namespace

ProtectedIdentities::ProtectedIdentities(const std::string& home,
                                         std::span<const std::string> protectedFolders)
{
    const FileDescriptor homeFolder(::open(home.c_str(), openFlags));
    if (homeFolder.isOpen()) {
        addAncestors(homeFolder.get());
    }
    const std::set<Key> homeAndAbove = m_leading;
    for (const std::string& path : protectedFolders) {
        const FileDescriptor folder(::open(path.c_str(), openFlags));
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
    climb(folder, [&](const EntryIdentity& identity) {
        m_leading.emplace(identity.device, identity.inode);
        return Step::goOn;
    });
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
        return isEnclosed ? Step::stop : Step::goOn;
    });
    return isEnclosed || !isKnown;
}

} // namespace CleanCore
