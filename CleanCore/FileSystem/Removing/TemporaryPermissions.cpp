#include "CleanCore/FileSystem/Removing/TemporaryPermissions.h"

#include "CleanCore/FileSystem/OpenWithoutLinks.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace CleanCore {

namespace {

constexpr mode_t permissionBits = 07777;
constexpr mode_t grantedBits = S_IWUSR;

/// Changes the mode by the folder's entry in /proc, which leads to the very same inode: fchmod(2)
/// refuses O_PATH descriptors.
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

bool TemporaryPermissions::grant(int folder, const EntryStatus& status)
{
    EntryStatus current;
    if (readStatus(folder, "", current) != 0 || current.identity != status.identity ||
        (current.mode & grantedBits) != 0 || wouldLoseGroupBit(folder, current.mode)) {
        return false;
    }
    const mode_t mode = current.mode & permissionBits;
    const std::lock_guard lock(m_mutex);
    m_formerModes.emplace(std::pair(current.identity.device, current.identity.inode), mode);
    return changeMode(folder, mode | grantedBits);
}

bool TemporaryPermissions::hasGranted() const
{
    const std::lock_guard lock(m_mutex);
    return !m_formerModes.empty();
}

int TemporaryPermissions::unlink(const Folder& folder, const char* name, int flags)
{
    if (::unlinkat(folder.folder.get(), name, flags) == 0) {
        return 0;
    }
    if (errno == EACCES && grant(folder.folder.get(), folder.status) &&
        ::unlinkat(folder.folder.get(), name, flags) == 0) {
        return 0;
    }
    return errno;
}

void TemporaryPermissions::restore(int folder, const EntryStatus& status)
{
    const std::lock_guard lock(m_mutex);
    const auto former = m_formerModes.find({status.identity.device, status.identity.inode});
    if (former != m_formerModes.end() && changeMode(folder, former->second)) {
        m_formerModes.erase(former);
    }
}

void TemporaryPermissions::restore(const Folder& parent, const std::string& name)
{
    const FileDescriptor folder = holdFolder(parent.folder.get(), name.c_str());
    EntryStatus status;
    if (folder.isOpen() && readStatus(folder.get(), "", status) == 0) {
        restore(folder.get(), status);
    }
}

void TemporaryPermissions::restoreAll(FolderStack& stack)
{
    while (!stack.isEmpty() && hasGranted()) {
        restore(stack.top().folder.get(), stack.top().status);
        if (!stack.openParent()) {
            restoreFromRoot(stack);
            break;
        }
        static_cast<void>(stack.pop());
    }
    stack.clear();
}

void TemporaryPermissions::restoreFromRoot(FolderStack& stack)
{
    FileDescriptor held;
    int folder = stack.at(0).folder.get();
    for (std::size_t i = 0; i + 1 < stack.depth(); ++i) {
        const Folder& below = stack.at(i + 1);
        FileDescriptor next = holdFolder(folder, below.name.c_str());
        EntryStatus status;
        const bool isSame =
            readStatus(next.get(), "", status) == 0 && status.identity == below.status.identity;
        restore(folder, stack.at(i).status);
        if (!isSame) {
            return;
        }
        held = std::move(next);
        folder = held.get();
    }
}

} // namespace CleanCore
