#pragma once

#include "CleanCore/CloudDrive/StandIn/CloudContent.h"
#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"

#include <cstdint>
#include <optional>
#include <set>
#include <utility>

namespace CleanCore {

/// Turns files of the container into placeholders.
///
/// Content is released in steps, from the beginning of the file, and only if the mirror's copy is
/// another file with the same bytes, known to be on disk. Before each step, a marker that covers it
/// becomes durable on the file; see CloudMarker. Whenever the process is killed, the content is in
/// the mirror, and the file with its marker tells how to continue.
///
/// Only content is released. Extended attributes stay, the marker among them, and so does the block
/// that holds those without room in the inode: a placeholder may then have st_blocks of 8 and still
/// hold no data.
///
/// Not for use by two threads at once.
class CloudRelease
{
public:
    /// `home` is the folder that holds the mirror; `stepBytes` is a multiple of the file system's
    /// block size.
    CloudRelease(const EntryIdentity& home, std::int64_t stepBytes)
        : m_home(home), m_stepBytes(stepBytes)
    {
    }

    /// Releases one regular file; one that holds nothing here stays as it is. Returns why it was
    /// refused, nothing otherwise.
    [[nodiscard]] std::optional<CloudFailure> releaseFile(const CloudEntry& entry);

private:
    class Steps;
    [[nodiscard]] bool isMirrorFolderDurable(int folder);
    [[nodiscard]] bool isKnownDurable(const EntryIdentity& folder) const;

    EntryIdentity m_home;
    std::int64_t m_stepBytes;
    CloudContent m_content;
    // Folders of the mirror whose names, up to the home, are known to be on disk.
    std::set<std::pair<std::uint64_t, std::uint64_t>> m_durableFolders;
};

} // namespace CleanCore
