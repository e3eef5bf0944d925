#pragma once

#include "CleanCore/CloudDrive/CloudRefusal.h"
#include "CleanCore/CloudDrive/CloudRequests.h"
#include "CleanCore/CloudDrive/ICloudItem.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class CloudDrive;
class FileManager;
class TaskPool;
class VolumeFacts;

/// Measures how much of one container of a cloud drive is downloaded, releases downloads and
/// fetches them again: released files stay in the cloud, and here as placeholders that hold no
/// bytes.
///
/// An immutable value; every operation blocks and may be called from any thread and from several at
/// once. Nothing throws or reports an error: unreadable entries count as nothing.
class ICloudEvictor
{
public:
    using Deadline = std::chrono::steady_clock::time_point;
    using Clock = std::function<Deadline()>;
    /// Files and bytes so far. Called on the thread that measures.
    using MeasureProgress = std::function<void(std::int64_t files, std::int64_t bytes)>;
    /// The 1-based position of the item about to be released, the number of items, and its path.
    /// Called on the thread that releases.
    using EvictProgress =
        std::function<void(std::int64_t index, std::int64_t total, const std::string& path)>;

    using MeasureResult = ICloudMeasure;

    struct EvictReport
    {
        /// The growth of the volume's free space; never negative.
        std::int64_t freedBytes = 0;
        /// The items whose release was asked for, refused ones included, in item order.
        std::vector<std::string> released;
        /// Bundles of those items that still hold bytes, largest first.
        std::vector<ICloudAppBundle> appsStillDownloaded;
        /// The items that do not lie in the container and were not touched, in item order.
        std::vector<std::string> blocked;
        /// The files of the released items that the cloud drive refused. They change nothing else
        /// in the report.
        std::vector<CloudRefusal> refused;

        /// The items that have another name since, by the one that they had.
        std::map<std::string, std::string> renamed = {};

        [[nodiscard]] std::int64_t appsStillBytes() const;
        /// Appends the report of another container.
        void add(EvictReport other);
        [[nodiscard]] bool operator==(const EvictReport&) const = default;
    };

    /// The 1-based position of the entry that is being fetched, the number of entries, and how far
    /// it is. Called on the thread that fetches.
    using FetchProgress =
        std::function<void(std::int64_t index, std::int64_t total, const CloudProgress& progress)>;

    struct FetchReport
    {
        /// The entries that were asked for, refused ones included, in their order.
        std::vector<std::string> fetched;
        std::vector<CloudRefusal> refused;

        void add(FetchReport other);
        [[nodiscard]] bool operator==(const FetchReport&) const = default;
    };

    /// Does no work and checks nothing. With a pool, several entries are measured at once; with
    /// `facts` as well, the free space is read once the file system has settled.
    ICloudEvictor(std::string container, std::shared_ptr<const FileManager> fileManager,
                  std::shared_ptr<const CloudDrive> drive, std::shared_ptr<TaskPool> pool = nullptr,
                  Clock clock = std::chrono::steady_clock::now,
                  std::shared_ptr<const VolumeFacts> facts = nullptr);

    /// The paths of the entries directly inside the container, without hidden ones, in the file
    /// manager's order; empty when the container cannot be read.
    [[nodiscard]] std::vector<std::string> topLevelChildren() const;

    /// Measures one entry. A drive that measures itself reports no progress. The clock is read
    /// before a folder is walked and every 256 files. Progress comes every 2,000 files of a folder
    /// and once at its end.
    [[nodiscard]] MeasureResult measureChild(const std::string& path,
                                             std::optional<Deadline> deadline = std::nullopt,
                                             const MeasureProgress& progress = nullptr) const;

    /// One result for each of `paths`, in their order, measured by all workers of the pool.
    /// A stop request ends it where the drive measures itself.
    [[nodiscard]] std::vector<MeasureResult>
    measureChildren(std::span<const std::string> paths,
                    std::optional<Deadline> deadline = std::nullopt,
                    const std::stop_token& stop = {}) const;

    /// Every entry of the container that holds at least one byte, largest first, those of equal
    /// size in listing order.
    [[nodiscard]] std::vector<ICloudItem> listLocalCopies() const;

    /// Whether the drive measures all its entries at once, so that asking for them one by one would
    /// take much longer.
    [[nodiscard]] bool measuresTogether() const;

    /// Asks for the release of `items`, one after the other in their order, then waits for those
    /// files that the drive releases later. An item that, with links resolved, lies outside the
    /// container is left alone. A stop request takes effect before the next item, or earlier where
    /// the drive can end one; items that were not reached are in no list.
    [[nodiscard]] EvictReport evict(std::span<const ICloudItem> items,
                                    const EvictProgress& progress = nullptr,
                                    const std::stop_token& stop = {}) const;

    /// Fetches the content of the entries at `paths`, and stops, like evict().
    [[nodiscard]] FetchReport fetch(std::span<const std::string> paths,
                                    const FetchProgress& progress = nullptr,
                                    const std::stop_token& stop = {}) const;

private:
    [[nodiscard]] std::vector<ICloudAppBundle>
    stillDownloaded(std::span<const ICloudItem> items, std::span<const std::string> released) const;

    std::string m_container;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const CloudDrive> m_drive;
    std::shared_ptr<TaskPool> m_pool;
    Clock m_clock;
    std::shared_ptr<const VolumeFacts> m_facts;
};

} // namespace CleanCore
