#include "CleanCore/CloudDrive/ICloudEvictor.h"

#include "CleanCore/CloudDrive/CloudDrive.h"
#include "CleanCore/CloudDrive/TreeCount.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Reclaim/FreeSpaceWatch.h"
#include "CleanCore/Support/PathText.h"
#include "CleanCore/Support/SaturatingSum.h"
#include "CleanCore/Support/SharedWork.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

namespace CleanCore {

namespace {

constexpr std::int64_t filesBetweenReports = 2000;
constexpr std::int64_t filesBetweenClockReadings = 256;

/// One call of measureChildren(): whichever worker is free takes the next entry.
class Measuring : public SharedWork<std::size_t>
{
public:
    Measuring(std::shared_ptr<TaskPool> pool, ICloudEvictor evictor,
              std::span<const std::string> paths, std::optional<ICloudEvictor::Deadline> deadline)
        : SharedWork(std::move(pool)), results(paths.size()), m_evictor(std::move(evictor)),
          m_paths(paths.begin(), paths.end()), m_deadline(deadline)
    {
    }

    std::vector<ICloudEvictor::MeasureResult> results;

protected:
    void workOn(std::size_t index) override
    {
        if (index + 1 < m_paths.size()) {
            offer(index + 1);
        }
        results[index] = m_evictor.measureChild(m_paths[index], m_deadline);
    }

private:
    const ICloudEvictor m_evictor;
    const std::vector<std::string> m_paths;
    const std::optional<ICloudEvictor::Deadline> m_deadline;
};

template <typename Element>
void append(std::vector<Element> from, std::vector<Element>& to)
{
    std::ranges::move(from, std::back_inserter(to));
}

constexpr auto byLocalBytes = [](const auto& a, const auto& b) {
    return a.localBytes > b.localBytes;
};

void append(CloudReply reply, std::vector<CloudRefusal>& refused,
            std::vector<CloudPending>& pending)
{
    append(std::move(reply.refused), refused);
    append(std::move(reply.pending), pending);
}

} // namespace

std::int64_t ICloudEvictor::EvictReport::appsStillBytes() const
{
    return totalBytes(appsStillDownloaded);
}

void ICloudEvictor::EvictReport::add(EvictReport other)
{
    freedBytes = saturatingSum(freedBytes, other.freedBytes);
    append(std::move(other.released), released);
    append(std::move(other.appsStillDownloaded), appsStillDownloaded);
    std::ranges::stable_sort(appsStillDownloaded, byLocalBytes);
    append(std::move(other.blocked), blocked);
    append(std::move(other.refused), refused);
    renamed.merge(other.renamed);
}

void ICloudEvictor::FetchReport::add(FetchReport other)
{
    append(std::move(other.fetched), fetched);
    append(std::move(other.refused), refused);
}

ICloudEvictor::ICloudEvictor(std::string container, std::shared_ptr<const FileManager> fileManager,
                             std::shared_ptr<const CloudDrive> drive,
                             std::shared_ptr<TaskPool> pool, Clock clock,
                             std::shared_ptr<const VolumeFacts> facts)
    : m_container(std::move(container)), m_fileManager(std::move(fileManager)),
      m_drive(std::move(drive)), m_pool(std::move(pool)), m_clock(std::move(clock)),
      m_facts(std::move(facts))
{
}

std::vector<std::string> ICloudEvictor::topLevelChildren() const
{
    std::vector<std::string> children;
    try {
        for (const std::string& name : m_fileManager->namesInFolder(m_container)) {
            if (name.front() != '.') {
                children.push_back(PathText::join(m_container, name));
            }
        }
    } catch (const std::system_error&) {
        // Half a listing would mislead.
        children.clear();
    }
    return children;
}

ICloudEvictor::MeasureResult ICloudEvictor::measureChild(const std::string& path,
                                                         std::optional<Deadline> deadline,
                                                         const MeasureProgress& progress) const
{
    if (m_drive && m_drive->measuring() != CloudMeasuring::byAllocatedBytes) {
        return m_drive->measure(m_container, std::span(&path, 1), deadline, {}).at(0);
    }
    const auto isLate = [&] { return deadline && m_clock() > *deadline; };
    const std::optional<EntryAttributes> attributes = m_fileManager->attributes(path);
    if (!attributes || attributes->kind == EntryKind::symbolicLink) {
        return {{path, 0, 0, {}}, false};
    }
    if (attributes->kind != EntryKind::folder) {
        return {{path, attributes->allocatedBytes, 1, {}}, false};
    }
    if (isLate()) {
        return {{path, 0, 0, {}}, true};
    }
    TreeCount count(path);
    bool timedOut = false;
    const bool wasWalked = m_fileManager->visitTree(path, [&](const TreeEntry& entry) {
        if (count.add(entry)) {
            if (progress && count.files % filesBetweenReports == 0) {
                progress(count.files, count.bytes);
            }
            timedOut = count.files % filesBetweenClockReadings == 0 && isLate();
        }
        return !timedOut;
    });
    count.closeBundle();
    if (wasWalked && !timedOut && progress) {
        progress(count.files, count.bytes);
    }
    return {{path, count.bytes, count.files, std::move(count.apps)}, timedOut};
}

std::vector<ICloudEvictor::MeasureResult>
ICloudEvictor::measureChildren(std::span<const std::string> paths, std::optional<Deadline> deadline,
                               const std::stop_token& stop) const
{
    if (measuresTogether()) {
        return m_drive->measure(m_container, paths, deadline, stop);
    }
    if (m_pool && !paths.empty()) {
        const auto measuring = std::make_shared<Measuring>(m_pool, *this, paths, deadline);
        measuring->run(0);
        return std::move(measuring->results);
    }
    std::vector<MeasureResult> results;
    for (const std::string& path : paths) {
        results.push_back(measureChild(path, deadline));
    }
    return results;
}

bool ICloudEvictor::measuresTogether() const
{
    return m_drive && m_drive->measuring() == CloudMeasuring::together;
}

std::vector<ICloudItem> ICloudEvictor::listLocalCopies() const
{
    std::vector<ICloudItem> items;
    for (MeasureResult& result : measureChildren(topLevelChildren())) {
        if (result.item.localBytes > 0) {
            items.push_back(std::move(result.item));
        }
    }
    std::ranges::stable_sort(items, byLocalBytes);
    return items;
}

ICloudEvictor::EvictReport ICloudEvictor::evict(std::span<const ICloudItem> items,
                                                const EvictProgress& progress,
                                                const std::stop_token& stop) const
{
    EvictReport report;
    const std::string root = m_fileManager->resolvingSymbolicLinks(m_container);
    const FreeSpaceWatch freeSpace(m_fileManager, m_facts, m_pool, std::span(&m_container, 1));
    Reclaim expected;
    std::int64_t index = 0;
    std::vector<CloudPending> pending;
    const CloudWatch watch = {stop, nullptr};
    for (const ICloudItem& item : items) {
        if (stop.stop_requested()) {
            break;
        }
        if (progress) {
            progress(++index, static_cast<std::int64_t>(items.size()), item.path);
        }
        // Compares whole components: a folder beside the container may share its first letters.
        if (!PathText::isSameOrInside(m_fileManager->resolvingSymbolicLinks(item.path), root)) {
            report.blocked.push_back(item.path);
            continue;
        }
        append(m_drive->release(item.path, watch), report.refused, pending);
        report.released.push_back(item.path);
        expected.possibleBytes = saturatingSum(expected.possibleBytes, item.localBytes);
    }
    CloudReply rest = m_drive->await(pending, watch);
    append(std::move(rest.refused), report.refused);
    for (const std::string& path : report.released) {
        if (const auto name = rest.renamed.find(path); name != rest.renamed.end()) {
            report.renamed.insert(*name);
        }
    }
    report.freedBytes = freeSpace.growth(expected).bytes();
    report.appsStillDownloaded = stillDownloaded(items, report.released);
    return report;
}

ICloudEvictor::FetchReport ICloudEvictor::fetch(std::span<const std::string> paths,
                                                const FetchProgress& progress,
                                                const std::stop_token& stop) const
{
    FetchReport report;
    std::vector<CloudPending> pending;
    std::int64_t index = 0;
    const auto total = static_cast<std::int64_t>(paths.size());
    const CloudWatch watch = {stop, [&](const CloudProgress& step) {
                                  if (progress) {
                                      progress(index, total, step);
                                  }
                              }};
    for (const std::string& path : paths) {
        if (stop.stop_requested()) {
            break;
        }
        ++index;
        watch.progress({path, 0, 0});
        append(m_drive->fetch(path, watch), report.refused, pending);
        report.fetched.push_back(path);
    }
    CloudReply rest = m_drive->await(pending, watch);
    append(std::move(rest.refused), report.refused);
    return report;
}

std::vector<ICloudAppBundle>
ICloudEvictor::stillDownloaded(std::span<const ICloudItem> items,
                               std::span<const std::string> released) const
{
    const std::set<std::string_view> releasedPaths(released.begin(), released.end());
    std::vector<ICloudAppBundle> apps;
    for (const ICloudItem& item : items) {
        if (releasedPaths.count(item.path) == 0) {
            continue;
        }
        for (const ICloudAppBundle& app : item.apps) {
            const std::optional<EntryAttributes> probe = m_fileManager->attributes(app.probePath);
            if (probe && probe->allocatedBytes > 0) {
                apps.push_back(app);
            }
        }
    }
    std::ranges::stable_sort(apps, byLocalBytes);
    return apps;
}

} // namespace CleanCore
