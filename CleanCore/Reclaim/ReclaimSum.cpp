#include "CleanCore/Reclaim/ReclaimSum.h"

#include "CleanCore/Reclaim/VolumeFacts.h"
#include "CleanCore/Support/SaturatingSum.h"

#include <algorithm>
#include <set>
#include <string>
#include <tuple>

namespace CleanCore {

namespace {

/// No file system stores an extent in less.
constexpr std::int64_t smallestExtentBytes = 4096;
/// XFS, which gives back records of entries, does so in chunks of this size.
constexpr std::int64_t recordChunkBytes = std::int64_t{32} * 1024;

std::int64_t& bytesOf(BytesByCause& bytes, ReclaimCause cause)
{
    return bytes[static_cast<std::size_t>(cause)];
}

} // namespace

struct ReclaimSum::ChosenFile
{
    FileKey key;
    LinkedFile file;

    [[nodiscard]] bool isWhole() const { return file.names >= file.linkCount; }
};

struct ReclaimSum::ChosenExtent
{
    std::uint64_t volume = 0;
    ReclaimExtent extent;

    [[nodiscard]] auto place() const { return std::tuple(volume, extent.start); }
    /// Whether it is that of a file with several names, found by another of them before.
    [[nodiscard]] bool isFoundAgain(const ChosenExtent& before) const
    {
        return extent.linkedInode != 0 && extent.linkedInode == before.extent.linkedInode &&
               place() == before.place();
    }
    [[nodiscard]] std::uint64_t end() const
    {
        return extent.start + static_cast<std::uint64_t>(extent.length);
    }
};

void ReclaimSum::Sums::addDoubtful(ReclaimCause cause, std::int64_t bytes)
{
    bytesOf(doubtful, cause) = saturatingSum(bytesOf(doubtful, cause), bytes);
}

void ReclaimSum::Sums::addLost(ReclaimCause cause, std::int64_t bytes)
{
    bytesOf(lost, cause) = saturatingSum(bytesOf(lost, cause), bytes);
}

void ReclaimSum::add(std::int64_t sizeBytes, const ReclaimFindings& findings)
{
    if (!findings.isExamined) {
        m_sums.addDoubtful(ReclaimCause::unknown, sizeBytes);
        return;
    }
    m_sums.certainBytes = saturatingSum(m_sums.certainBytes, findings.certainBytes);
    m_recordBytes = saturatingSum(m_recordBytes, findings.recordBytes);
    if (findings.details) {
        m_details.push_back(findings.details);
    }
}

void ReclaimSum::addLeftInPlace(std::int64_t bytes)
{
    m_sums.addLost(ReclaimCause::leftInPlace, bytes);
}

void ReclaimSum::addShownOnly(std::int64_t bytes)
{
    m_sums.addLost(ReclaimCause::shownOnly, bytes);
}

void ReclaimSum::addOfTool(std::int64_t bytes)
{
    m_sums.addDoubtful(ReclaimCause::unknown, bytes);
}

/// Sorted by their keys, each once.
std::vector<ReclaimSum::ChosenFile> ReclaimSum::chosenFiles() const
{
    std::vector<ChosenFile> files;
    for (const auto& details : m_details) {
        for (const LinkedFile& file : details->linked) {
            files.push_back({{details->device, file.inode}, file});
        }
    }
    std::ranges::sort(files, {}, &ChosenFile::key);
    std::size_t count = 0;
    for (const ChosenFile& next : files) {
        if (count > 0 && files[count - 1].key == next.key) {
            files[count - 1].file.addNamesOf(next.file);
        } else {
            files[count++] = next;
        }
    }
    files.resize(count);
    return files;
}

void ReclaimSum::addFile(const ChosenFile& chosen, bool isCutShort, Sums& sums)
{
    const LinkedFile& file = chosen.file;
    std::int64_t uncountedNames = file.names;
    if (chosen.isWhole()) {
        --uncountedNames;
        sums.addLost(ReclaimCause::inlineData, file.inlineBytes);
        if (file.isCertain) {
            sums.certainBytes += file.plainBytes;
        } else {
            sums.addDoubtful(file.doubt, file.plainBytes);
        }
    } else if (isCutShort) {
        // The names that are missing here may be among those that had no room.
        --uncountedNames;
        sums.addDoubtful(ReclaimCause::otherNames, file.allocatedBytes);
    }
    sums.addLost(ReclaimCause::otherNames, file.allocatedBytes * uncountedNames);
}

/// Without those of files that do not count; sorted by their places, the longest first.
std::vector<ReclaimSum::ChosenExtent>
ReclaimSum::chosenExtents(const std::vector<ChosenFile>& files) const
{
    const auto isCounted = [&](std::uint64_t device, std::uint64_t linkedInode) {
        const FileKey key{device, linkedInode};
        const auto file = std::ranges::lower_bound(files, key, {}, &ChosenFile::key);
        return file != files.end() && file->key == key && file->isWhole();
    };
    std::vector<ChosenExtent> extents;
    for (const auto& details : m_details) {
        for (const ReclaimExtent& extent : details->extents) {
            if (extent.linkedInode == 0 || isCounted(details->device, extent.linkedInode)) {
                extents.push_back({details->volume, extent});
            }
        }
    }
    std::ranges::sort(extents, {}, [](const ChosenExtent& chosen) {
        return std::tuple(chosen.volume, chosen.extent.start, -chosen.extent.length,
                          chosen.extent.linkedInode);
    });
    return extents;
}

void ReclaimSum::addExtents(const std::vector<ChosenExtent>& extents, Sums& sums)
{
    // The next place at which an extent is known to start, seen from the back.
    std::vector<std::uint64_t> limits(extents.size());
    for (std::size_t i = extents.size(); i-- > 0;) {
        const bool hasNext = i + 1 < extents.size() && extents[i + 1].volume == extents[i].volume;
        limits[i] = !hasNext ? UINT64_MAX
                    : extents[i + 1].extent.start > extents[i].extent.start
                        ? extents[i + 1].extent.start
                        : limits[i + 1];
    }
    std::uint64_t covered = 0;
    for (std::size_t i = 0; i < extents.size(); ++i) {
        const ReclaimExtent& extent = extents[i].extent;
        if (i > 0 && extents[i].isFoundAgain(extents[i - 1])) {
            continue;
        }
        if (i == 0 || extents[i - 1].volume != extents[i].volume) {
            covered = 0;
        }
        // The file system does not tell how long a compressed extent is on the volume.
        const std::uint64_t end =
            extent.isCompressed ? std::min(extents[i].end(), limits[i]) : extents[i].end();
        const std::uint64_t begin = std::max(extent.start, covered);
        const std::int64_t possible = end > begin ? static_cast<std::int64_t>(end - begin) : 0;
        covered = std::max(covered, extent.isCompressed ? limits[i] : end);
        const std::int64_t certain =
            extent.cause == ReclaimCause::compressed ? std::min(possible, smallestExtentBytes) : 0;
        sums.certainBytes += certain;
        sums.addDoubtful(extent.cause, possible - certain);
        sums.addLost(extent.cause, extent.length - possible);
    }
}

Reclaim ReclaimSum::result() const
{
    Sums sums = m_sums;
    bool isCutShort = false;
    std::set<std::string> programs;
    for (const auto& details : m_details) {
        isCutShort = isCutShort || details->isCutShort;
        programs.insert(details->programs.begin(), details->programs.end());
        for (std::size_t i = 0; i < reclaimCauseCount; ++i) {
            sums.addDoubtful(static_cast<ReclaimCause>(i), details->doubtful[i]);
            sums.addLost(static_cast<ReclaimCause>(i), details->lost[i]);
        }
    }
    const std::vector<ChosenFile> files = chosenFiles();
    for (const ChosenFile& file : files) {
        addFile(file, isCutShort, sums);
    }
    addExtents(chosenExtents(files), sums);
    if (m_recordBytes >= std::max(recordChunkBytes, sums.certainBytes / 100)) {
        sums.addDoubtful(ReclaimCause::unknown, m_recordBytes);
    }

    Reclaim reclaim{sums.certainBytes, sums.certainBytes};
    for (std::size_t i = 0; i < reclaimCauseCount; ++i) {
        reclaim.possibleBytes = saturatingSum(reclaim.possibleBytes, sums.doubtful[i]);
        if (const auto bytes = saturatingSum(sums.doubtful[i], sums.lost[i]); bytes > 0) {
            reclaim.causes.push_back({static_cast<ReclaimCause>(i), bytes});
            if (reclaim.causes.back().cause == ReclaimCause::openFiles) {
                reclaim.causes.back().programs.assign(programs.begin(), programs.end());
            }
        }
    }
    return reclaim;
}

} // namespace CleanCore
