#include "Zorvane/State/CloudState.h"

#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "Zorvane/State/MainThreadQueue.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace Zorvane {

namespace {

using CleanCore::ICloudAppBundle;
using CleanCore::ICloudItem;
using CleanCore::saturatingSum;

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
    : m_environment(environment), m_sections(environment), m_queue(std::move(queue))
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

const CloudSection& CloudState::sectionOf(const std::string& path) const
{
    return m_sections.all()[m_sections.placeOf(path)];
}

const std::optional<CleanCore::CloudProgress>& CloudState::fetchProgress() const
{
    return m_fetchProgress;
}

const std::vector<CleanCore::CloudRefusal>& CloudState::fetchRefusals() const
{
    return m_fetchRefusals;
}

const std::string& CloudState::presentPath(const std::string& path) const
{
    const auto name = m_renamed.find(path);
    return name == m_renamed.end() ? path : name->second;
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
    m_fetchRefusals.clear();
    emit fetchProgressChanged();
    setReleaseReport(std::nullopt);
}

void CloudState::requestEvict()
{
    if (m_icloudSelection.empty() || isWorking()) {
        return;
    }
    performEvict();
}

void CloudState::performEvict()
{
    m_isEvicting = true;
    emit isEvictingChanged();
    const std::vector<ICloudItem> items = icloudSelectedItems();
    m_work = std::jthread([this, queue = m_queue, total = static_cast<std::int64_t>(items.size()),
                           parts = m_sections.divided(std::span(items), [](const auto& item) {
                               return item.path;
                           })](const std::stop_token& stop) {
        EvictReport report;
        std::int64_t before = 0;
        for (const auto& part : parts) {
            const auto progress = [&](std::int64_t index, std::int64_t, const std::string& path) {
                const EvictProgress step{before + index, total,
                                         std::string(CleanCore::PathText::lastComponent(path)),
                                         part.first.drive};
                queue->post([this, step] { setReleaseProgress(step); });
            };
            report.add(part.first.evictor.evict(part.second, progress, stop));
            before += static_cast<std::int64_t>(part.second.size());
        }
        queue->post([this, report] { finishRelease(report); });
    });
}

void CloudState::requestFetch(const std::string& path)
{
    if (isWorking() || !m_icloudReleasedPaths.contains(path)) {
        return;
    }
    m_isFetching = true;
    emit isFetchingChanged();
    m_fetchRefusals.clear();
    m_fetchProgress = CleanCore::CloudProgress{path, 0, 0};
    emit fetchProgressChanged();
    m_work = std::jthread([this, queue = m_queue, evictor = sectionOf(path).evictor,
                           path](const std::stop_token& stop) {
        const auto progress = [&](std::int64_t, std::int64_t,
                                  const CleanCore::CloudProgress& step) {
            queue->post([this, step] {
                m_fetchProgress = step;
                emit fetchProgressChanged();
            });
        };
        const auto report = evictor.fetch(std::span(&path, 1), progress, stop);
        queue->post([this, path, report] { finishFetch(path, report); });
    });
}

void CloudState::finishFetch(const std::string& path,
                             const CleanCore::ICloudEvictor::FetchReport& report)
{
    m_fetchProgress.reset();
    m_fetchRefusals = report.refused;
    emit fetchProgressChanged();
    if (report.refused.empty()) {
        m_renamed.erase(path);
        m_icloudReleasedPaths.erase(path);
        emit icloudReleasedPathsChanged();
    }
    m_isFetching = false;
    emit isFetchingChanged();
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
    m_renamed.insert(report.renamed.begin(), report.renamed.end());
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
