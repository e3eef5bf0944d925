#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/StandIn/CloudPlace.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <ctime>
#include <optional>
#include <sys/stat.h>

namespace CleanCore {

/// A file of the container and its copy in the mirror, both held by leases: nobody else has the
/// one open at all, or the other open to write. Nothing is ever written to the copy, not even the
/// time of its last access.
class CloudFilePair
{
public:
    /// Opens both. Nothing when it succeeds; else why this pair cannot be worked on.
    [[nodiscard]] std::optional<CloudFailure> open(const CloudPlace& place);

    [[nodiscard]] int local() const { return m_local.get(); }
    [[nodiscard]] int copy() const { return m_copy.get(); }
    /// As they were when the leases had been taken.
    [[nodiscard]] const struct stat& localStatus() const { return m_localStatus; }
    [[nodiscard]] const struct stat& copyStatus() const { return m_copyStatus; }

    /// Whether the leases are still held and nobody waits for them.
    [[nodiscard]] bool isHeld() const;

    /// Why the next step must not be taken: somebody wants one of the files, or the local one is
    /// no longer the only name of what was opened, as long and as old as it should be.
    [[nodiscard]] std::optional<CloudFailure> findChange(const CloudPlace& place,
                                                         const timespec& modifiedAt) const;

private:
    [[nodiscard]] std::optional<CloudFailure> openLocal(const CloudPlace& place);
    [[nodiscard]] std::optional<CloudFailure> openCopy(const CloudPlace& place);

    FileDescriptor m_local;
    FileDescriptor m_copy;
    struct stat m_localStatus = {};
    struct stat m_copyStatus = {};
};

/// What stands for a failed system call on a file of the container.
[[nodiscard]] CloudFailure failureOf(int error);

/// The same for a call that may have succeeded (0).
[[nodiscard]] std::optional<CloudFailure> failureOrNone(int error);

} // namespace CleanCore
