#include "CleanCore/CloudDrive/SyncClient/Placeholders.h"

#include <sys/stat.h>
#include <sys/xattr.h>

namespace CleanCore {

namespace {

constexpr std::int64_t blockBytes = 512;

bool hasAttribute(const std::string& path, const char* name)
{
    return ::lgetxattr(path.c_str(), name, nullptr, 0) >= 0;
}

} // namespace

LocalEntry Placeholders::entryAt(const std::string& path) const
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0) {
        return {};
    }
    LocalEntry entry = {LocalKind::other, status.st_blocks * blockBytes, status.st_dev};
    if (S_ISDIR(status.st_mode)) {
        entry.kind = LocalKind::folder;
    } else if (S_ISREG(status.st_mode)) {
        const bool isMarked =
            (status.st_size == 1 && !m_suffix.empty() && path.ends_with(m_suffix)) ||
            (status.st_size <= 1 && hasAttribute(path, "user.nextcloud.hydrate_exec")) ||
            (status.st_blocks == 0 && hasAttribute(path, "user.openvfs.data"));
        entry.kind = isMarked ? LocalKind::placeholder : LocalKind::file;
        entry.allocatedBytes = isMarked ? 0 : entry.allocatedBytes;
    }
    return entry;
}

std::string Placeholders::plain(const std::string& path) const
{
    return !m_suffix.empty() && path.ends_with(m_suffix)
               ? path.substr(0, path.size() - m_suffix.size())
               : path;
}

bool Placeholders::isClientsOwn(std::string_view name)
{
    const auto begins = [&](std::string_view text) { return name.starts_with(text); };
    return begins(".sync_") || begins("._sync_") || begins(".owncloudsync") ||
           begins(".nextcloudsync") || begins(".OpenCloudSync");
}

} // namespace CleanCore
