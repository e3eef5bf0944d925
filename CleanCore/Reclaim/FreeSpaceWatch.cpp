#include "CleanCore/Reclaim/FreeSpaceWatch.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/TaskPool.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace CleanCore {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{2};
constexpr std::chrono::milliseconds readingInterval{5};
// What is freed in the background has come to its end once it has been quiet for so long.
constexpr std::chrono::milliseconds quietTime{150};

/// Counts tasks of the pool that have not ended. A task that hangs holds it, not the caller.
struct Unfinished
{
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t count = 0;
};

} // namespace

std::int64_t FreeSpaceWatch::Growth::bytes() const
{
    std::int64_t sum = 0;
    for (const VolumeGrowth& volume : volumes) {
        sum += volume.bytes;
    }
    return sum;
}

FreeSpaceWatch::FreeSpaceWatch(std::shared_ptr<const FileManager> fileManager,
                               std::shared_ptr<const VolumeFacts> facts,
                               std::shared_ptr<TaskPool> pool, std::span<const std::string> folders)
    : m_fileManager(std::move(fileManager)), m_facts(std::move(facts)), m_pool(std::move(pool))
{
    for (const std::string& folder : folders) {
        Volume volume;
        volume.folder = folder;
        volume.descriptor = std::make_shared<const FileDescriptor>(
            m_facts ? m_fileManager->openFolder(folder) : FileDescriptor());
        const bool isOpen = volume.descriptor->isOpen();
        if (isOpen) {
            volume.traits = m_facts->traits(volume.descriptor->get());
        }
        // Without a descriptor the volume is not known, and only the first folder is read.
        if (isOpen || m_volumes.empty()) {
            if (std::ranges::none_of(m_volumes, [&](const Volume& other) {
                    return other.descriptor->isOpen() &&
                           other.traits.spaceId == volume.traits.spaceId;
                })) {
                m_volumes.push_back(std::move(volume));
            }
        }
    }
    waitUntilSettled(false, Clock::now() + patience);
    for (Volume& volume : m_volumes) {
        volume.freeBytes = freeBytes(volume.folder);
    }
}

/// Settles all volumes at the same time. False if that takes longer than until the deadline.
bool FreeSpaceWatch::waitUntilSettled(bool after, Clock::time_point deadline) const
{
    const auto unfinished = std::make_shared<Unfinished>();
    for (const Volume& volume : m_volumes) {
        if (!volume.descriptor->isOpen()) {
            continue;
        }
        {
            const std::lock_guard lock(unfinished->mutex);
            ++unfinished->count;
        }
        m_pool->submit([unfinished, after, facts = m_facts, folder = volume.descriptor] {
            facts->settle(folder->get(), after);
            const std::lock_guard lock(unfinished->mutex);
            --unfinished->count;
            unfinished->changed.notify_all();
        });
    }
    std::unique_lock lock(unfinished->mutex);
    return unfinished->changed.wait_until(lock, deadline, [&] { return unfinished->count == 0; });
}

FreeSpaceWatch::Growth FreeSpaceWatch::growth(const Reclaim& expected) const
{
    const bool freesLate = std::ranges::any_of(
        m_volumes, [](const Volume& volume) { return volume.traits.freesLate; });
    Growth growth = grownBy();
    if (!freesLate && growth.bytes() >= expected.possibleBytes) {
        return growth;
    }
    const Clock::time_point deadline = Clock::now() + patience;
    const bool isSettled = waitUntilSettled(true, deadline);
    growth = grownBy();
    Clock::time_point changedAt = Clock::now();
    bool isQuiet = !freesLate;
    while (!isQuiet && Clock::now() < deadline) {
        std::this_thread::sleep_for(readingInterval);
        Growth next = grownBy();
        if (next.bytes() != growth.bytes()) {
            changedAt = Clock::now();
            growth = std::move(next);
        }
        isQuiet = Clock::now() - changedAt >= quietTime;
    }
    growth.isStillBeingFreed = growth.bytes() < expected.certainBytes && (!isSettled || !isQuiet);
    return growth;
}

std::int64_t FreeSpaceWatch::freeBytes(const std::string& folder) const
{
    return m_fileManager->availableCapacity(folder).value_or(0);
}

FreeSpaceWatch::Growth FreeSpaceWatch::grownBy() const
{
    Growth growth;
    for (const Volume& volume : m_volumes) {
        growth.volumes.push_back(
            {volume.folder,
             std::max<std::int64_t>(0, freeBytes(volume.folder) - volume.freeBytes)});
    }
    return growth;
}

} // namespace CleanCore
