#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Reclaim/ReclaimFindings.h"
#include "CleanCore/Reclaim/VolumeFacts.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <mutex>
#include <set>
#include <stop_token>
#include <unordered_map>
#include <vector>

namespace CleanCore {

/// What all walks of one survey share.
struct SurveyLimits
{
    /// The names of linked files and the extents that may still be kept. Beyond, findings become
    /// wider instead of larger.
    std::atomic<std::int64_t> recordsLeft = 0;
    /// Held while a file is looked at, by its inode: one that this process has open itself, for
    /// another of its names or another walk, would count as open elsewhere.
    std::array<std::mutex, 64> fileLocks;
};

/// Finds out about the space of every file on a walk over items; see EntryWalk.
class ReclaimTally
{
public:
    /// The findings about one item, as they grow.
    struct Item
    {
        /// Whether the item was there, and whether a part of it could not be looked at.
        bool isThere = false;
        bool isMissed = false;
        std::int64_t certainBytes = 0;
        std::int64_t recordBytes = 0;
        /// Made when the first part appears that is not certain.
        std::unique_ptr<ReclaimDetails> details;
        /// The inodes of files that are open elsewhere; at most `openFileLimit` of them.
        std::vector<std::uint64_t> openFiles;

        void merge(Item& part);
    };

    struct Totals
    {
        std::vector<Item> items;
        std::shared_ptr<const VolumeFacts> facts;
        VolumeTraits traits;
        std::shared_ptr<SurveyLimits> limits;
        std::stop_token stop;
        std::unique_ptr<std::mutex> mutex = std::make_unique<std::mutex>();
    };

    static constexpr std::size_t openFileLimit = 1000;

    explicit ReclaimTally(Totals& totals) : m_totals(totals) {}

    void begin(std::size_t /*entry*/, int folder, const char* name, const EntryStatus& status,
               bool isBeyond)
    {
        m_part.isThere = true;
        add(folder, name, status, isBeyond);
    }
    void add(int folder, const char* name, const EntryStatus& status, bool isBeyond);
    void miss(int error) { m_part.isMissed = m_part.isMissed || error != ENOENT; }
    void meetMount() { m_part.isMissed = true; }
    void flush(std::size_t entry);

private:
    void addFile(int folder, const char* name, const EntryStatus& status);
    void addLinked(const EntryStatus& status, LinkedFile file);
    void addExtents(std::uint64_t linkedInode);
    [[nodiscard]] bool takeRecord();
    ReclaimDetails& details();

    Totals& m_totals;
    Item m_part;
    /// Where the files with several names are among those of the part, by inode.
    std::unordered_map<std::uint64_t, std::size_t> m_known;
    FileSpace m_space;
};

} // namespace CleanCore
