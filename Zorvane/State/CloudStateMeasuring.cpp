#include "Zorvane/State/CloudState.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/MainThreadQueue.h"

#include <QTimer>
#include <algorithm>
#include <utility>

namespace Zorvane {

namespace {

using CleanCore::ICloudItem;
using CleanCore::saturatingSum;

constexpr std::chrono::seconds measuringLimit{90};
constexpr std::size_t measuringThreads = 32;

} // namespace

void CloudState::reloadICloud()
{
    m_icloudItems.emplace();
    emit icloudItemsChanged();
    m_icloudSelection.clear();
    emit icloudSelectionChanged();
    setReleaseReport(std::nullopt);
    m_icloudReleasedPaths.clear();
    emit icloudReleasedPathsChanged();
    m_icloudBusyFolders.clear();
    emit icloudBusyFoldersChanged();
    m_icloudMeasured = {};
    emit icloudMeasuredChanged();
    m_icloudMeasureByChild.clear();
    m_renamed.clear();
    m_fetchRefusals.clear();
    emit fetchProgressChanged();
    m_sections.reset();
    emit sectionsChanged();
    m_hasDrive = m_environment.home.fileManager->exists(container());
    measure(m_sections.given(), m_sections.given().evictor.topLevelChildren());
    for (std::size_t i = 1; i < m_environment.cloudDrives.size(); ++i) {
        searchFolders(m_environment.cloudDrives[i]);
    }
}

void CloudState::retryBusyICloudFolders()
{
    const std::vector<std::string> folders = std::exchange(m_icloudBusyFolders, {});
    emit icloudBusyFoldersChanged();
    for (const std::string& folder : folders) {
        m_icloudMeasureByChild.erase(folder);
    }
    for (const auto& [section, paths] :
         m_sections.divided(std::span(folders), [](const auto& path) { return path; })) {
        measure(section, paths);
    }
}

/// Returns the number of a new batch, which is given up when it takes too long.
int CloudState::beginBatch()
{
    const int batch = ++m_batch;
    auto* const timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [this, batch, timer] {
        giveUp(batch);
        timer->deleteLater();
    });
    timer->start(m_environment.cloudPatience);
    return batch;
}

void CloudState::searchFolders(const std::shared_ptr<const CleanCore::CloudDrive>& drive)
{
    const int batch = beginBatch();
    m_searches.insert(batch);
    ++m_icloudPending;
    emit icloudPendingChanged();
    const auto pool = std::make_shared<CleanCore::TaskPool>(1);
    pool->submit([this, pool, batch, drive, queue = m_queue] {
        auto containers = drive->containers({});
        queue->post([this, batch, drive, containers = std::move(containers)] {
            addFolders(batch, drive, containers);
        });
    });
}

void CloudState::addFolders(int batch, const std::shared_ptr<const CleanCore::CloudDrive>& drive,
                            const std::vector<CleanCore::CloudContainer>& containers)
{
    if (m_searches.erase(batch) == 0) {
        // Given up by now.
        return;
    }
    const auto added = m_sections.add(m_environment, drive, containers);
    emit sectionsChanged();
    for (const CloudSection& section : added) {
        measure(section, section.evictor.topLevelChildren());
    }
    --m_icloudPending;
    emit icloudPendingChanged();
}

void CloudState::measure(const CloudSection& section, const std::vector<std::string>& children)
{
    m_icloudPending += static_cast<std::int64_t>(children.size());
    emit icloudPendingChanged();
    // A folder that hangs may hold its thread for good. So measuring has threads that nothing else
    // waits for, each batch its own, and the time of an entry runs from its own beginning.
    const int batch = beginBatch();
    const auto pool = std::make_shared<CleanCore::TaskPool>(
        static_cast<unsigned>(std::clamp<std::size_t>(children.size(), 1, measuringThreads)));
    // A drive that measures its entries together does so in one task.
    const std::size_t part =
        section.evictor.measuresTogether() ? std::max<std::size_t>(children.size(), 1) : 1;
    for (std::size_t begin = 0; begin < children.size(); begin += part) {
        const auto first = children.begin() + static_cast<std::ptrdiff_t>(begin);
        std::vector<std::string> paths(first, first + static_cast<std::ptrdiff_t>(part));
        for (const std::string& path : paths) {
            m_beingMeasured.emplace(batch, path);
        }
        pool->submit([this, pool, batch, evictor = section.evictor, queue = m_queue,
                      clock = m_environment.steadyNow, paths = std::move(paths)] {
            const auto deadline = clock() + measuringLimit;
            const auto progressOf = [&](const std::string& path) {
                return [this, queue, path](std::int64_t files, std::int64_t bytes) {
                    queue->post([this, path, files, bytes] {
                        handleMeasureProgress(path, {files, bytes});
                    });
                };
            };
            const auto post = [&](const CleanCore::ICloudMeasure& result) {
                queue->post([this, batch, result] { handleMeasureResult(batch, result); });
            };
            if (!evictor.measuresTogether()) {
                post(evictor.measureChild(paths.front(), deadline, progressOf(paths.front())));
                return;
            }
            for (const auto& result : evictor.measureChildren(paths, deadline)) {
                progressOf(result.item.path)(result.item.fileCount, result.item.localBytes);
                post(result);
            }
        });
    }
}

/// Calls those entries of a batch busy that hang where no deadline reaches them.
void CloudState::giveUp(int batch)
{
    m_icloudPending -= static_cast<std::int64_t>(m_searches.erase(batch));
    for (auto entry = m_beingMeasured.begin(); entry != m_beingMeasured.end();) {
        if (entry->first != batch) {
            ++entry;
            continue;
        }
        addBusy(entry->second);
        entry = m_beingMeasured.erase(entry);
        --m_icloudPending;
    }
    emit icloudPendingChanged();
}

void CloudState::addBusy(const std::string& path)
{
    m_icloudBusyFolders.push_back(path);
    emit icloudBusyFoldersChanged();
}

void CloudState::handleMeasureProgress(const std::string& path, MeasureProgress progress)
{
    m_icloudMeasureByChild[path] = progress;
    m_icloudMeasured = {};
    for (const auto& [child, measured] : m_icloudMeasureByChild) {
        m_icloudMeasured.files = saturatingSum(m_icloudMeasured.files, measured.files);
        m_icloudMeasured.bytes = saturatingSum(m_icloudMeasured.bytes, measured.bytes);
    }
    emit icloudMeasuredChanged();
}

void CloudState::handleMeasureResult(int batch,
                                     const CleanCore::ICloudEvictor::MeasureResult& result)
{
    if (m_beingMeasured.erase({batch, result.item.path}) == 0) {
        // Given up by now.
        return;
    }
    --m_icloudPending;
    emit icloudPendingChanged();
    if (result.timedOut) {
        addBusy(result.item.path);
    } else if (result.item.localBytes >= 1 && m_icloudItems) {
        const auto isBefore = [this](const ICloudItem& a, const ICloudItem& b) {
            const std::size_t first = m_sections.placeOf(a.path);
            const std::size_t second = m_sections.placeOf(b.path);
            return first != second ? first < second : a.localBytes > b.localBytes;
        };
        const auto place = std::ranges::upper_bound(*m_icloudItems, result.item, isBefore);
        m_icloudItems->insert(place, result.item);
        emit icloudItemsChanged();
    }
}

} // namespace Zorvane
