#include "Zorvane/State/ScanJob.h"

#include "CleanCore/Commands/CommandScanEngine.h"
#include "CleanCore/Scanning/Overlaps.h"
#include "CleanCore/Scanning/ResultList.h"
#include "CleanCore/Scanning/ScanEngine.h"
#include "CleanCore/Support/SaturatingSum.h"

#include <exception>
#include <iterator>
#include <numeric>
#include <optional>
#include <variant>
#include <vector>

namespace Zorvane {

namespace {

using CleanCore::CategoryResult;

/// Tells of the events of a scan as they come, and keeps its results.
struct Listener
{
    const ScanJob& job;
    std::vector<std::int64_t> totals = {};
    std::vector<CategoryResult> results = {};

    void operator()(CleanCore::RuleStarted& event) const { job.ruleStarted(event.ruleId); }

    void operator()(CleanCore::RuleCompleted& event)
    {
        totals.push_back(event.result.totalBytes());
        job.bytesFound(std::accumulate(totals.begin(), totals.end(), std::int64_t{0},
                                       CleanCore::saturatingSum));
    }

    void operator()(CleanCore::Finished& event) { results = std::move(event.results); }
};

std::optional<CleanCore::RulesCatalog> load(const ScanJob& job)
{
    try {
        return job.loadCatalog();
    } catch (const std::exception&) {
        // The screen goes back to where a scan can be started; there is nothing else to tell.
        return std::nullopt;
    }
}

} // namespace

void ScanJob::run(const std::stop_token& cancelled) const
{
    const std::optional<CleanCore::RulesCatalog> catalog = load(*this);
    if (!catalog) {
        failed();
        return;
    }
    const CleanCore::ScanEngine engine(home.home, home.fileManager, home.pool);
    CleanCore::EventStream<CleanCore::ScanEvent> events = engine.scan(catalog->rules, now());
    const std::stop_callback onCancel(cancelled, [&] { events.cancel(); });
    Listener listener{*this};
    while (auto event = events.next()) {
        std::visit(listener, *event);
    }
    if (cancelled.stop_requested()) {
        return;
    }
    listener.results = CleanCore::withoutOverlaps(std::move(listener.results), *home.fileManager);
    filesScanned();
    const CleanCore::CommandScanEngine commandEngine(runner, tools);
    std::vector<CategoryResult> ofTools = commandEngine.scan(catalog->rules);
    std::move(ofTools.begin(), ofTools.end(), std::back_inserter(listener.results));
    // Looked at once more: a scan that was cancelled meanwhile publishes nothing.
    if (cancelled.stop_requested()) {
        return;
    }
    finished(CleanCore::SelectionState(CleanCore::resultList(std::move(listener.results))));
}

} // namespace Zorvane
