#include "CleanCore/Scanning/Scan.h"

#include "CleanCore/Scanning/Overlaps.h"
#include "CleanCore/Scanning/ResultList.h"
#include "CleanCore/Scanning/ScanEngine.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>
#include <variant>

namespace CleanCore {

namespace {

/// Reports the events of a scan as progress and keeps its results.
struct Listener
{
    const Scan::Progress& progress;
    const std::set<std::string_view>& requestedIds;
    std::int64_t bytes = 0;
    bool hasFinished = false;
    std::vector<CategoryResult> results = {};

    void operator()(const RuleStarted& event) const { progress.ruleStarted(event.ruleId); }

    void operator()(const RuleCompleted& event)
    {
        if (requestedIds.contains(event.result.rule.id)) {
            bytes = saturatingSum(bytes, event.result.totalBytes());
            progress.bytesFound(bytes);
        }
    }

    void operator()(Finished& event)
    {
        hasFinished = true;
        results = std::move(event.results);
    }
};

} // namespace

Scan::Scan(std::string home, std::shared_ptr<const FileManager> fileManager,
           std::shared_ptr<TaskPool> pool, ToolAreas toolAreas)
    : m_home(std::move(home)), m_fileManager(std::move(fileManager)), m_pool(std::move(pool)),
      m_toolAreas(std::move(toolAreas))
{
}

std::optional<std::vector<CategoryResult>> Scan::run(std::span<const CleaningRule> rules,
                                                     std::span<const CleaningRule> catalog,
                                                     Timestamp now, const Progress& progress,
                                                     const std::stop_token& stop) const
{
    std::set<std::string_view> requestedIds;
    for (const CleaningRule& rule : rules) {
        requestedIds.insert(rule.id);
    }
    std::vector<CleaningRule> scanned =
        rulesReachingInto(rules, catalog, m_home, *m_fileManager, stop);
    scanned.insert(scanned.end(), rules.begin(), rules.end());

    EventStream<ScanEvent> events = ScanEngine(m_home, m_fileManager, m_pool).scan(scanned, now);
    const std::stop_callback cancelOnStop(stop, [&] { events.cancel(); });
    Listener listener{progress, requestedIds};
    while (auto event = events.next()) {
        std::visit(listener, *event);
    }
    if (!listener.hasFinished || stop.stop_requested()) {
        return std::nullopt;
    }
    std::vector<CategoryResult> results =
        withoutOverlaps(std::move(listener.results), *m_fileManager);
    std::erase_if(results, [&](const CategoryResult& result) {
        return !requestedIds.contains(result.rule.id);
    });
    // They come in the order of their completion, which differs from run to run.
    std::ranges::sort(results, {}, [](const CategoryResult& result) { return result.rule.id; });
    progress.filesScanned();
    if (m_toolAreas) {
        std::vector<CategoryResult> ofTools = m_toolAreas(rules, stop);
        std::move(ofTools.begin(), ofTools.end(), std::back_inserter(results));
    }
    if (stop.stop_requested()) {
        return std::nullopt;
    }
    return resultList(std::move(results));
}

} // namespace CleanCore
