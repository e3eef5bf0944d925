#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"

#include <set>
#include <span>
#include <string>
#include <utility>

namespace CleanCore {

/// The protected folders and everything above them, by device and inode, so that they are
/// recognised under any name, after any move and through any bind mount.
class ProtectedIdentities
{
public:
    /// Reads the identities now; a folder that does not exist has none. Links are followed; one
    /// that leads to home or above it protects nothing, or everything would be protected.
    ProtectedIdentities(const std::string& home, std::span<const std::string> protectedFolders);

    /// Whether this is a protected folder.
    [[nodiscard]] bool holds(const EntryIdentity& identity) const;

    /// Whether this is a protected folder, home, or a folder above one of them. None of these may
    /// be removed or emptied.
    [[nodiscard]] bool holdsOrLeadsTo(const EntryIdentity& identity) const;

    /// Whether the folder open as `folder` is, or lies inside, a protected folder, by its present
    /// place. True when this cannot be found out.
    [[nodiscard]] bool enclose(int folder) const;

private:
    using Key = std::pair<std::uint64_t, std::uint64_t>;
    void addAncestors(int folder);

    std::set<Key> m_protected;
    std::set<Key> m_leading;
};

} // namespace CleanCore
