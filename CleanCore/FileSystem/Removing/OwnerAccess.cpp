#include "CleanCore/FileSystem/Removing/OwnerAccess.h"

#include <algorithm>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace CleanCore {

namespace {

constexpr mode_t permissionBits = 07777;

/// fchmod(2) refuses O_PATH descriptors; their entry in /proc leads to the very same inode.
bool changeMode(int folder, mode_t mode)
{
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    return ::chmod(link.c_str(), mode) == 0;
}

/// Whether a change of its mode would cost the folder its set-group-id bit, which chmod(2) clears
/// for those who are not in its group.
bool wouldLoseGroupBit(int folder, mode_t mode)
{
    struct stat status = {};
    if ((mode & S_ISGID) == 0 || ::geteuid() == 0 ||
        ::fstatat(folder, "", &status, AT_EMPTY_PATH) != 0 || status.st_gid == ::getegid()) {
        return false;
    }
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
    const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
    return std::find(groups.begin(), groups.begin() + std::max(0, count), status.st_gid) ==
           groups.begin() + std::max(0, count);
}

} // namespace

bool OwnerAccess::lend(int folder, const EntryStatus& status)
{
    EntryStatus current;
    if (readStatus(folder, "", current) != 0 || current.identity != status.identity ||
        (current.mode & S_IRWXU) == S_IRWXU || wouldLoseGroupBit(folder, current.mode)) {
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

bool OwnerAccess::hasLent() const
{
    const std::lock_guard lock(m_mutex);
    return !m_lent.empty();
}

} // namespace CleanCore
