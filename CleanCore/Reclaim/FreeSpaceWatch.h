#pragma once

#include "CleanCore/Reclaim/Reclaim.h"
#include "CleanCore/Reclaim/VolumeFacts.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;
class TaskPool;

/// By how much the free space of one volume has grown.
struct VolumeGrowth
{
    /// A folder on the volume.
    std::string folder;
    /// Never negative.
    std::int64_t bytes = 0;

    [[nodiscard]] bool operator==(const VolumeGrowth&) const = default;
};

/// The free space of some volumes before and after a removal.
class FreeSpaceWatch
{
public:
    struct Growth
    {
        /// In the order of the folders, each volume once.
        std::vector<VolumeGrowth> volumes;
        /// The time was over before the file systems had given back all that is certain.
        bool isStillBeingFreed = false;

        [[nodiscard]] std::int64_t bytes() const;
    };

    /// Reads the free space now. Without `facts` nothing is known about the volumes, and only that
    /// of the first folder is read. Folders that lie on the same volume count once.
    FreeSpaceWatch(std::shared_ptr<const FileManager> fileManager,
                   std::shared_ptr<const VolumeFacts> facts, std::shared_ptr<TaskPool> pool,
                   std::span<const std::string> folders);

    /// Reads it again, after the file systems have settled, for which it waits two seconds at most.
    /// It does not wait for more than is possible, unless one of them frees in the background.
    [[nodiscard]] Growth growth(const Reclaim& expected) const;

private:
    struct Volume
    {
        std::string folder;
        /// Closed if it cannot be opened; such a volume is only read.
        std::shared_ptr<const FileDescriptor> descriptor;
        VolumeTraits traits;
        std::int64_t freeBytes = 0;
    };

    bool waitUntilSettled(bool after, std::chrono::steady_clock::time_point deadline) const;
    [[nodiscard]] std::int64_t freeBytes(const std::string& folder) const;
    [[nodiscard]] Growth grownBy() const;

    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const VolumeFacts> m_facts;
    std::shared_ptr<TaskPool> m_pool;
    std::vector<Volume> m_volumes;
};

} // namespace CleanCore
