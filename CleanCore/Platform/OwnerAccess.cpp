#include "CleanCore/Platform/OwnerAccess.h"

#include <string>
#include <sys/stat.h>

namespace CleanCore {

namespace {

constexpr mode_t permissionBits = 07777;

/// fchmod(2) refuses O_PATH descriptors; their entry in /proc leads to the very same inode.
bool changeMode(int folder, mode_t mode)
{
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    return ::chmod(link.c_str(), mode) == 0;
}

} // namespace

bool OwnerAccess::lend(int folder, const EntryStatus& status)
{
    EntryStatus current;
    if (readStatus(folder, "", current) != 0 || current.identity != status.identity ||
        (current.mode & S_IRWXU) == S_IRWXU) {
        return false;
    }
    const mode_t own = current.mode & permissionBits;
    const std::lock_guard lock(m_mutex);
    m_lent.emplace(std::pair(current.identity.device, current.identity.inode), own);
    return changeMode(folder, own | S_IRWXU);
}

void OwnerAccess::takeBack(int folder, const EntryStatus& status)
{
    const std::lock_guard lock(m_mutex);
    const auto lent = m_lent.find({status.identity.device, status.identity.inode});
    if (lent != m_lent.end() && changeMode(folder, lent->second)) {
        m_lent.erase(lent);
    }
}

} // namespace CleanCore
