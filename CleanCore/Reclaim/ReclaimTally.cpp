#include "CleanCore/Reclaim/ReclaimTally.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

namespace {

template <typename Value>
void append(std::vector<Value>& list, std::vector<Value>& more)
{
    if (list.empty()) {
        list.swap(more);
    } else {
        list.insert(list.end(), more.begin(), more.end());
    }
}

std::size_t position(ReclaimCause cause)
{
    return static_cast<std::size_t>(cause);
}

/// Why the plain data of a file is not certain to come back.
ReclaimCause doubtOf(const FileSpace& space)
{
    return space.isOpenElsewhere ? ReclaimCause::openFiles : ReclaimCause::unknown;
}

} // namespace

void ReclaimTally::Item::merge(Item& part)
{
    isThere = isThere || part.isThere;
    isMissed = isMissed || part.isMissed;
    certainBytes += part.certainBytes;
    recordBytes += part.recordBytes;
    append(openFiles, part.openFiles);
    if (!part.details) {
        return;
    }
    if (!details) {
        details = std::move(part.details);
        return;
    }
    append(details->linked, part.details->linked);
    append(details->extents, part.details->extents);
    for (std::size_t cause = 0; cause < reclaimCauseCount; ++cause) {
        details->doubtful[cause] += part.details->doubtful[cause];
        details->lost[cause] += part.details->lost[cause];
    }
    details->isCutShort = details->isCutShort || part.details->isCutShort;
}

ReclaimDetails& ReclaimTally::details()
{
    if (!m_part.details) {
        m_part.details = std::make_unique<ReclaimDetails>();
    }
    return *m_part.details;
}

bool ReclaimTally::takeRecord()
{
    if (m_totals.limits->recordsLeft.fetch_sub(1, std::memory_order_relaxed) > 0) {
        return true;
    }
    details().isCutShort = true;
    return false;
}

void ReclaimTally::add(int folder, const char* name, const EntryStatus& status, bool isBeyond)
{
    if (isBeyond) {
        return;
    }
    const VolumeTraits::Allocation allocation = m_totals.traits.allocation;
    m_part.isMissed = m_part.isMissed || status.isFixed;
    m_part.recordBytes += m_totals.traits.bytesOfRecord /
                          (status.isFolder() ? 1 : std::max<std::int64_t>(1, status.linkCount));
    if (status.identity.kind == EntryKind::file && status.allocatedBytes > 0) {
        addFile(folder, name, status);
    } else if (allocation == VolumeTraits::Allocation::untold) {
        details().doubtful[position(ReclaimCause::unknown)] += status.allocatedBytes;
    } else if (!status.isSymbolicLink() || allocation == VolumeTraits::Allocation::exact) {
        // Elsewhere a link lies in the records of the file system, whatever its allocated size.
        m_part.certainBytes += status.allocatedBytes;
    }
}

void ReclaimTally::addFile(int folder, const char* name, const EntryStatus& status)
{
    const bool isLinked = status.linkCount > 1;
    if (const auto known = m_known.find(status.identity.inode);
        isLinked && known != m_known.end()) {
        ++m_part.details->linked[known->second].names;
        return;
    }
    if (m_totals.traits.leasedInodes.contains(status.identity.inode)) {
        m_space = FileSpace();
        m_space.isTold = m_totals.traits.allocation == VolumeTraits::Allocation::exact;
        m_space.isOpenElsewhere = true;
    } else {
        auto& locks = m_totals.limits->fileLocks;
        const std::lock_guard lock(locks[status.identity.inode % locks.size()]);
        m_totals.facts->readSpace(folder, name, status.allocatedBytes, m_totals.traits,
                                  m_totals.stop, m_space);
    }
    std::int64_t bytes = status.allocatedBytes;
    std::int64_t inlineBytes = 0;
    if (!m_space.isTold) {
        // All of it is in doubt, so its extents must not count again.
        m_space.extents.clear();
    } else if (m_totals.traits.allocation == VolumeTraits::Allocation::byExtents) {
        // The allocated size may count data twice that was written over and not flushed.
        bytes = m_space.plainBytes;
        inlineBytes = m_space.hasInlineData ? status.allocatedBytes - bytes : 0;
    } else {
        inlineBytes = bytes % m_totals.traits.blockBytes;
        bytes -= inlineBytes;
    }
    if (m_totals.traits.keepsExtentsWhole && m_space.replacedBytes > 0) {
        details().doubtful[position(ReclaimCause::unknown)] += m_space.replacedBytes;
    }
    const bool isCertain = m_space.isTold && !m_space.isOpenElsewhere;
    if (m_space.isOpenElsewhere && m_part.openFiles.size() < openFileLimit) {
        m_part.openFiles.push_back(status.identity.inode);
    }
    if (isLinked) {
        addLinked(status, {status.identity.inode, 1, status.linkCount, status.allocatedBytes, bytes,
                           isCertain, doubtOf(m_space), inlineBytes});
        return;
    }
    if (isCertain) {
        m_part.certainBytes += bytes;
    } else {
        details().doubtful[position(doubtOf(m_space))] += bytes;
    }
    if (inlineBytes > 0) {
        details().lost[position(ReclaimCause::inlineData)] += inlineBytes;
    }
    addExtents(0);
}

void ReclaimTally::addLinked(const EntryStatus& status, LinkedFile file)
{
    if (!takeRecord()) {
        // The names that are chosen add up to the whole file only if all of them are.
        const std::int64_t part = status.allocatedBytes / status.linkCount + 1;
        details().doubtful[position(ReclaimCause::otherNames)] += part;
        details().lost[position(ReclaimCause::otherNames)] += status.allocatedBytes - part;
        return;
    }
    m_known.emplace(file.inode, details().linked.size());
    details().linked.push_back(file);
    addExtents(file.inode);
}

void ReclaimTally::addExtents(std::uint64_t linkedInode)
{
    for (const FileExtent& extent : m_space.extents) {
        ReclaimCause cause = ReclaimCause::compressed;
        if (m_space.isOpenElsewhere) {
            cause = ReclaimCause::openFiles;
        } else if (extent.isShared) {
            cause = ReclaimCause::sharedExtents;
        }
        if (takeRecord()) {
            details().extents.push_back(
                {extent.start, extent.length, linkedInode, cause, extent.isCompressed});
        } else {
            details().doubtful[position(cause)] += extent.length;
        }
    }
}

void ReclaimTally::flush(std::size_t entry)
{
    const std::lock_guard lock(*m_totals.mutex);
    m_totals.items[entry].merge(m_part);
    m_part = {};
    m_known.clear();
}

} // namespace CleanCore
