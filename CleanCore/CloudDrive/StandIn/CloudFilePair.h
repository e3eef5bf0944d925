#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <ctime>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace CleanCore {

/// One entry of the container: the folder that holds it and the mirror's counterpart of that
/// folder. Valid only during one call, since the walk owns the descriptors.
struct CloudEntry
{
    int folder = -1;
    EntryStatus folderStatus;
    /// -1 where the mirror has no such folder.
    int mirrorFolder = -1;
    EntryStatus mirrorFolderStatus;
    std::string name;
    /// The entry's absolute path, for reports.
    std::string path;
};

/// A file of the container and its copy in the mirror, both held by leases (fcntl(2)): nobody else
/// has the file open, and nobody has the copy open to write. The copy is never written to, and even
/// its access time stays.
class CloudFilePair
{
public:
    /// Opens both. Returns why this pair cannot be worked on; nothing on success.
    [[nodiscard]] std::optional<CloudFailure> open(const CloudEntry& entry);

    [[nodiscard]] int local() const { return m_local.get(); }
    [[nodiscard]] int copy() const { return m_copy.get(); }
    /// The status of each once the leases were held.
    [[nodiscard]] const struct stat& localStatus() const { return m_localStatus; }
    [[nodiscard]] const struct stat& copyStatus() const { return m_copyStatus; }

    /// Whether both leases are held and nobody waits for one. From a yes on, the kernel keeps
    /// others waiting for the time in /proc/sys/fs/lease-break-time (45 s).
    [[nodiscard]] bool isHeld() const;

    /// Sets the local file's modification time to `modifiedAt` if it is another: a request that was
    /// killed may have left its own. Returns why it could not.
    [[nodiscard]] std::optional<CloudFailure> restoreTime(const timespec& modifiedAt);

    /// Why the next step must not be taken: somebody waits for one of the files, or the local one
    /// was renamed, linked, or changed in its length or in its time, which should be `modifiedAt`.
    [[nodiscard]] std::optional<CloudFailure> findChange(const CloudEntry& entry,
                                                         const timespec& modifiedAt) const;

private:
    [[nodiscard]] std::optional<CloudFailure> openLocal(const CloudEntry& entry);
    [[nodiscard]] std::optional<CloudFailure> openCopy(const CloudEntry& entry);

    FileDescriptor m_local;
    FileDescriptor m_copy;
    struct stat m_localStatus = {};
    struct stat m_copyStatus = {};
};

/// Opens the entry to read it, without its copy and without a lease, and reads its status. Closed,
/// with errno set, when it fails.
[[nodiscard]] FileDescriptor openToRead(const CloudEntry& entry, struct stat& status);

/// The failure for the errno of a system call on a file of the container.
[[nodiscard]] CloudFailure failureOf(int error);

/// The same; nothing for 0.
[[nodiscard]] std::optional<CloudFailure> failureOrNone(int error);

} // namespace CleanCore
