#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/AppState.h"

#include <algorithm>
#include <utility>

namespace Zorvane {

namespace {

using CleanCore::ICloudAppBundle;
using CleanCore::ICloudItem;
using CleanCore::saturatingSum;

constexpr std::chrono::seconds measuringLimit{90};

constexpr auto byLocalBytes = [](const auto& a, const auto& b) {
    return a.localBytes > b.localBytes;
};

} // namespace

const std::optional<std::vector<ICloudItem>>& AppState::icloudItems() const
{
    return m_icloudItems;
}

const std::set<std::string>& AppState::icloudSelection() const
{
    return m_icloudSelection;
}

const std::vector<std::string>& AppState::icloudBusyFolders() const
{
    return m_icloudBusyFolders;
}

const std::set<std::string>& AppState::icloudReleasedPaths() const
{
    return m_icloudReleasedPaths;
}

const std::optional<AppState::EvictProgress>& AppState::icloudEvictProgress() const
{
    return m_icloudEvictProgress;
}

const std::optional<AppState::EvictReport>& AppState::icloudEvictReport() const
{
    return m_icloudEvictReport;
}

std::int64_t AppState::icloudDownloadedBytes() const
{
    std::int64_t bytes = 0;
    if (m_icloudItems) {
        for (const ICloudItem& item : *m_icloudItems) {
            bytes = saturatingSum(bytes, item.localBytes);
        }
    }
    return bytes;
}

std::vector<ICloudItem> AppState::icloudSelectedItems() const
{
    std::vector<ICloudItem> items;
    if (m_icloudItems) {
        std::ranges::copy_if(*m_icloudItems, std::back_inserter(items), [&](const auto& item) {
            return m_icloudSelection.contains(item.path);
        });
    }
    return items;
}

std::int64_t AppState::icloudSelectedBytes() const
{
    std::int64_t bytes = 0;
    for (const ICloudItem& item : icloudSelectedItems()) {
        bytes = saturatingSum(bytes, item.releasableBytes());
    }
    return bytes;
}

std::int64_t AppState::icloudSelectedFileCount() const
{
    std::int64_t count = 0;
    for (const ICloudItem& item : icloudSelectedItems()) {
        count = saturatingSum(count, item.releasableFileCount());
    }
    return count;
}

std::vector<ICloudAppBundle> AppState::icloudSelectedApps() const
{
    std::vector<ICloudAppBundle> apps;
    for (const ICloudItem& item : icloudSelectedItems()) {
        apps.insert(apps.end(), item.apps.begin(), item.apps.end());
    }
    std::ranges::stable_sort(apps, byLocalBytes);
    return apps;
}

std::int64_t AppState::icloudSelectedAppBytes() const
{
    std::int64_t bytes = 0;
    for (const ICloudAppBundle& app : icloudSelectedApps()) {
        bytes = saturatingSum(bytes, app.localBytes);
    }
    return bytes;
}

void AppState::setShowICloud(bool isShown)
{
    m_showICloud = isShown;
    emit showICloudChanged();
}

void AppState::setICloudSelected(const std::string& path, bool isSelected)
{
    if (isSelected) {
        m_icloudSelection.insert(path);
    } else {
        m_icloudSelection.erase(path);
    }
    emit icloudSelectionChanged();
}

void AppState::openICloud()
{
    setShowICloud(true);
    m_icloudEvictReport.reset();
    emit icloudEvictReportChanged();
}

void AppState::reloadICloud()
{
    m_icloudItems.emplace();
    emit icloudItemsChanged();
    m_icloudSelection.clear();
    emit icloudSelectionChanged();
    m_icloudEvictReport.reset();
    emit icloudEvictReportChanged();
    m_icloudReleasedPaths.clear();
    emit icloudReleasedPathsChanged();
    m_icloudBusyFolders.clear();
    emit icloudBusyFoldersChanged();
    m_icloudMeasuredFiles = 0;
    m_icloudMeasuredBytes = 0;
    emit icloudMeasuredChanged();
    m_icloudMeasureByChild.clear();
    measureICloudChildren(m_icloudEvictor.topLevelChildren());
}

void AppState::retryBusyICloudFolders()
{
    std::vector<std::string> folders = std::exchange(m_icloudBusyFolders, {});
    emit icloudBusyFoldersChanged();
    for (const std::string& folder : folders) {
        m_icloudMeasureByChild.erase(folder);
    }
    measureICloudChildren(std::move(folders));
}

void AppState::measureICloudChildren(std::vector<std::string> children)
{
    m_icloudPending += static_cast<std::int64_t>(children.size());
    emit icloudPendingChanged();
    const auto deadline = m_environment.steadyNow() + measuringLimit;
    for (std::string& child : children) {
        m_environment.home.pool->submit(
            [this, evictor = m_icloudEvictor, queue = m_queue, deadline, path = std::move(child)] {
                const auto progress = [&](std::int64_t files, std::int64_t bytes) {
                    queue->post([this, path, files, bytes] {
                        handleMeasureProgress(path, {files, bytes});
                    });
                };
                const auto result = evictor.measureChild(path, deadline, progress);
                queue->post([this, result] { handleMeasureResult(result); });
            });
    }
}

void AppState::handleMeasureProgress(const std::string& path, MeasureProgress progress)
{
    m_icloudMeasureByChild[path] = progress;
    MeasureProgress sum;
    for (const auto& [child, measured] : m_icloudMeasureByChild) {
        sum.files = saturatingSum(sum.files, measured.files);
        sum.bytes = saturatingSum(sum.bytes, measured.bytes);
    }
    m_icloudMeasuredFiles = sum.files;
    m_icloudMeasuredBytes = sum.bytes;
    emit icloudMeasuredChanged();
}

void AppState::handleMeasureResult(const CleanCore::ICloudEvictor::MeasureResult& result)
{
    --m_icloudPending;
    emit icloudPendingChanged();
    if (result.timedOut) {
        m_icloudBusyFolders.push_back(result.item.path);
        emit icloudBusyFoldersChanged();
    } else if (result.item.localBytes >= 1 && m_icloudItems) {
        const auto place = std::ranges::upper_bound(*m_icloudItems, result.item, byLocalBytes);
        m_icloudItems->insert(place, result.item);
        emit icloudItemsChanged();
    }
}

void AppState::requestEvict()
{
    if (m_icloudSelection.empty() || m_isEvicting) {
        return;
    }
    performEvict();
}

void AppState::performEvict()
{
    m_isEvicting = true;
    emit isEvictingChanged();
    m_evict = std::jthread([this, evictor = m_icloudEvictor, items = icloudSelectedItems(),
                            queue = m_queue](const std::stop_token& stop) {
        const auto progress = [&](std::int64_t index, std::int64_t total, const std::string& path) {
            const EvictProgress step{index, total,
                                     std::string(CleanCore::PathText::lastComponent(path))};
            queue->post([this, step] { setEvictProgress(step); });
        };
        const EvictReport report = evictor.evict(items, progress, stop);
        queue->post([this, report] { finishEvict(report); });
    });
}

void AppState::setEvictProgress(std::optional<EvictProgress> progress)
{
    m_icloudEvictProgress = std::move(progress);
    emit icloudEvictProgressChanged();
}

void AppState::finishEvict(const EvictReport& report)
{
    setEvictProgress(std::nullopt);
    m_icloudEvictReport = report;
    emit icloudEvictReportChanged();
    m_icloudReleasedPaths.insert(report.released.begin(), report.released.end());
    emit icloudReleasedPathsChanged();
    m_icloudSelection.clear();
    emit icloudSelectionChanged();
    m_isEvicting = false;
    emit isEvictingChanged();
    closeWhenReady();
}

void AppState::revealICloudApps(std::span<const ICloudAppBundle> apps) const
{
    std::vector<std::string> paths;
    for (const ICloudAppBundle& app : apps) {
        paths.push_back(app.path);
    }
    m_environment.reveal(paths);
}

} // namespace Zorvane
