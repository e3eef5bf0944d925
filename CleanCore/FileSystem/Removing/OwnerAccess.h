#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"

#include <map>
#include <mutex>
#include <utility>

namespace CleanCore {

/// The owner's permissions, lent to folders that lack them while they are removed (package stores
/// are shipped read-only), and taken back from those that stay. Safe from any thread.
class OwnerAccess
{
public:
    /// Gives the folder open as `folder` (O_PATH will do) the owner's permissions. False when it
    /// has them already or the system refuses, and for one whose set-group-id bit the system would
    /// drop for good.
    [[nodiscard]] bool lend(int folder, const EntryStatus& status);

    /// Gives the folder its own permissions back, if they were ever lent.
    void takeBack(int folder, const EntryStatus& status);

    /// Whether any were lent and not taken back.
    [[nodiscard]] bool hasLent() const;

private:
    mutable std::mutex m_mutex;
    std::map<std::pair<std::uint64_t, std::uint64_t>, mode_t> m_lent;
};

} // namespace CleanCore
