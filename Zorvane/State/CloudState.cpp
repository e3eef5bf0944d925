#include "Zorvane/State/CloudState.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/MainThreadQueue.h"

#include <QTimer>
#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace Zorvane {

namespace {

using CleanCore::ICloudAppBundle;
using CleanCore::ICloudItem;
using CleanCore::saturatingSum;

constexpr std::chrono::seconds measuringLimit{90};
constexpr std::size_t measuringThreads = 32;

constexpr auto byLocalBytes = [](const auto& a, const auto& b) {
    return a.localBytes > b.localBytes;
};

template <typename Elements, typename Figure>
std::int64_t sum(const Elements& elements, Figure figure)
{
    std::int64_t total = 0;
    for (const auto& element : elements) {
        total = saturatingSum(total, std::invoke(figure, element));
    }
    return total;
}

} // namespace

CloudState::CloudState(const Environment& environment, std::shared_ptr<MainThreadQueue> queue)
    : m_environment(environment),
      m_icloudEvictor(environment.home.cloudContainer(), environment.home.fileManager,
                      environment.cloudDrive, environment.home.pool, environment.steadyNow),
      m_queue(std::move(queue))
{
}

const std::optional<std::vector<ICloudItem>>& CloudState::icloudItems() const
{
    return m_icloudItems;
}

const std::set<std::string>& CloudState::icloudSelection() const
{
    return m_icloudSelection;
}

const std::vector<std::string>& CloudState::icloudBusyFolders() const
{
    return m_icloudBusyFolders;
}

const std::set<std::string>& CloudState::icloudReleasedPaths() const
{
    return m_icloudReleasedPaths;
}

const std::optional<CloudState::EvictProgress>& CloudState::icloudEvictProgress() const
{
    return m_icloudEvictProgress;
}

const std::optional<CloudState::EvictReport>& CloudState::icloudEvictReport() const
{
    return m_icloudEvictReport;
}

std::string CloudState::container() const
{
    return m_environment.home.cloudContainer();
}

std::int64_t CloudState::refusedFiles(const std::string& path) const
{
    return m_icloudEvictReport
               ? std::ranges::count_if(m_icloudEvictReport->refused,
                                       [&](const CleanCore::CloudRefusal& refusal) {
                                           return CleanCore::PathText::isSameOrInside(refusal.path,
                                                                                      path);
                                       })
               : 0;
}

std::int64_t CloudState::icloudDownloadedBytes() const
{
    return m_icloudItems ? sum(*m_icloudItems, &ICloudItem::localBytes) : 0;
}

std::vector<ICloudItem> CloudState::icloudSelectedItems() const
{
    std::vector<ICloudItem> items;
    if (m_icloudItems) {
        std::ranges::copy_if(*m_icloudItems, std::back_inserter(items), [&](const auto& item) {
            return m_icloudSelection.contains(item.path);
        });
    }
    return items;
}

std::int64_t CloudState::icloudSelectedBytes() const
{
    return sum(icloudSelectedItems(), &ICloudItem::releasableBytes);
}

std::int64_t CloudState::icloudSelectedFileCount() const
{
    return sum(icloudSelectedItems(), &ICloudItem::releasableFileCount);
}

std::vector<ICloudAppBundle> CloudState::icloudSelectedApps() const
{
    std::vector<ICloudAppBundle> apps;
    for (const ICloudItem& item : icloudSelectedItems()) {
        apps.insert(apps.end(), item.apps.begin(), item.apps.end());
    }
    std::ranges::stable_sort(apps, byLocalBytes);
    return apps;
}

std::int64_t CloudState::icloudSelectedAppBytes() const
{
    return sum(icloudSelectedApps(), &ICloudAppBundle::localBytes);
}

void CloudState::setShowICloud(bool isShown)
{
    m_showICloud = isShown;
    emit showICloudChanged();
}

void CloudState::setICloudSelected(const std::string& path, bool isSelected)
{
    if (isSelected) {
        m_icloudSelection.insert(path);
    } else {
        m_icloudSelection.erase(path);
    }
    emit icloudSelectionChanged();
}

void CloudState::openICloud()
{
    setShowICloud(true);
    setReleaseReport(std::nullopt);
}

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
    m_hasDrive = m_environment.home.fileManager->exists(container());
    measureICloudChildren(m_icloudEvictor.topLevelChildren());
}

void CloudState::retryBusyICloudFolders()
{
    std::vector<std::string> folders = std::exchange(m_icloudBusyFolders, {});
    emit icloudBusyFoldersChanged();
    for (const std::string& folder : folders) {
        m_icloudMeasureByChild.erase(folder);
    }
    measureICloudChildren(std::move(folders));
}

void CloudState::measureICloudChildren(std::vector<std::string> children)
{
    m_icloudPending += static_cast<std::int64_t>(children.size());
    emit icloudPendingChanged();
    // A folder that hangs may hold its thread for good. So measuring has threads that nothing else
    // waits for, each batch its own, and the time of an entry runs from its own beginning.
    const int batch = ++m_batch;
    const auto pool = std::make_shared<CleanCore::TaskPool>(
        static_cast<unsigned>(std::clamp<std::size_t>(children.size(), 1, measuringThreads)));
    for (std::string& child : children) {
        m_beingMeasured.emplace(batch, child);
        pool->submit([this, pool, batch, evictor = m_icloudEvictor, queue = m_queue,
                      clock = m_environment.steadyNow, path = std::move(child)] {
            const auto deadline = clock() + measuringLimit;
            const auto progress = [&](std::int64_t files, std::int64_t bytes) {
                queue->post([this, path, files, bytes] {
                    handleMeasureProgress(path, {files, bytes});
                });
            };
            const auto result = evictor.measureChild(path, deadline, progress);
            queue->post([this, batch, result] { handleMeasureResult(batch, result); });
        });
    }
    auto* const timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [this, batch, timer] {
        giveUp(batch);
        timer->deleteLater();
    });
    timer->start(m_environment.cloudPatience);
}

/// Calls those entries of a batch busy that hang where no deadline reaches them.
void CloudState::giveUp(int batch)
{
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
    m_icloudMeasured = {
        sum(m_icloudMeasureByChild, [](const auto& child) { return child.second.files; }),
        sum(m_icloudMeasureByChild, [](const auto& child) { return child.second.bytes; })};
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
        const auto place = std::ranges::upper_bound(*m_icloudItems, result.item, byLocalBytes);
        m_icloudItems->insert(place, result.item);
        emit icloudItemsChanged();
    }
}

void CloudState::requestEvict()
{
    if (m_icloudSelection.empty() || m_isEvicting) {
        return;
    }
    performEvict();
}

void CloudState::performEvict()
{
    m_isEvicting = true;
    emit isEvictingChanged();
    m_release = std::jthread([this, evictor = m_icloudEvictor, items = icloudSelectedItems(),
                              queue = m_queue](const std::stop_token& stop) {
        const auto progress = [&](std::int64_t index, std::int64_t total, const std::string& path) {
            const EvictProgress step{index, total,
                                     std::string(CleanCore::PathText::lastComponent(path))};
            queue->post([this, step] { setReleaseProgress(step); });
        };
        const EvictReport report = evictor.evict(items, progress, stop);
        queue->post([this, report] { finishRelease(report); });
    });
}

void CloudState::setReleaseReport(std::optional<EvictReport> report)
{
    m_icloudEvictReport = std::move(report);
    emit icloudEvictReportChanged();
}

void CloudState::setReleaseProgress(std::optional<EvictProgress> progress)
{
    m_icloudEvictProgress = std::move(progress);
    emit icloudEvictProgressChanged();
}

void CloudState::finishRelease(const EvictReport& report)
{
    setReleaseProgress(std::nullopt);
    setReleaseReport(report);
    std::ranges::copy_if(report.released,
                         std::inserter(m_icloudReleasedPaths, m_icloudReleasedPaths.end()),
                         [this](const std::string& path) { return refusedFiles(path) == 0; });
    emit icloudReleasedPathsChanged();
    m_icloudSelection.clear();
    emit icloudSelectionChanged();
    m_isEvicting = false;
    emit isEvictingChanged();
}

void CloudState::revealICloudApps(std::span<const ICloudAppBundle> apps) const
{
    std::vector<std::string> paths;
    for (const ICloudAppBundle& app : apps) {
        paths.push_back(app.path);
    }
    m_environment.reveal(paths);
}

} // namespace Zorvane
