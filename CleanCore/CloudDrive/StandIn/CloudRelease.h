#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/StandIn/CloudContent.h"
#include "CleanCore/CloudDrive/StandIn/CloudPlace.h"

#include <cstdint>
#include <optional>
#include <set>
#include <utility>

namespace CleanCore {

/// Turns files of the container into placeholders.
///
/// A file gives up its content in steps, from its beginning, and only if the mirror's copy is
/// another file with the same bytes, known to be on disk. Before each step a marker that covers it
/// is made durable on the file; see CloudMarker. Whatever happens in between, the content exists in
/// the mirror, and what is left tells how to go on.
///
/// Only content is given up. Extended attributes stay, the user's own as well as the marker, and
/// where they have no room in the inode so do the blocks that hold them: a placeholder may have
/// st_blocks of 8, with no data in it.
///
/// Not for use by two threads at once.
class CloudRelease
{
public:
    /// `home` is the folder that holds the mirror; a step is `stepBytes` long, a multiple of the
    /// file system's blocks.
    CloudRelease(const EntryIdentity& home, std::int64_t stepBytes)
        : m_home(home), m_stepBytes(stepBytes)
    {
    }

    /// Releases one regular file. One that holds nothing here is left alone. Returns why it was
    /// refused, nothing otherwise.
    [[nodiscard]] std::optional<CloudFailure> releaseFile(const CloudPlace& place);

private:
    class Steps;
    [[nodiscard]] bool isMirrorFolderDurable(int folder);
    [[nodiscard]] bool isKnownDurable(const EntryIdentity& folder) const;

    EntryIdentity m_home;
    std::int64_t m_stepBytes;
    CloudContent m_content;
    // Folders of the mirror whose names are durable all the way up to the home.
    std::set<std::pair<std::uint64_t, std::uint64_t>> m_durableFolders;
};

} // namespace CleanCore
