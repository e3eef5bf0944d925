#include "CleanCore/Scanning/ScanEngine.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Scanning/ItemEnumerator.h"
#include "CleanCore/Support/TaskPool.h"

#include <iterator>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

namespace CleanCore {

namespace {

/// A scan under way. The tasks of its rules share it; the last of them ends the stream.
struct RunningScan
{
    std::string home;
    std::shared_ptr<const FileManager> fileManager;
    Timestamp now;
    EventSink<ScanEvent> sink;
    std::stop_token stop;
    std::size_t unfinished = 0;

    std::mutex mutex = {};
    std::vector<CategoryResult> results = {};

    std::optional<CategoryResult> scanRule(const CleaningRule& rule) const;
    void run(const CleaningRule& rule);
    void finish();
};

std::optional<CategoryResult> RunningScan::scanRule(const CleaningRule& rule) const
{
    const ItemEnumerator enumerator(fileManager);
    const PathExpander::Expansion expansion =
        PathExpander::expansion(rule.basePaths, home, *fileManager, stop);
    CategoryResult result{rule, {}, expansion.isCutShort};
    for (const std::string& base : expansion.bases) {
        if (stop.stop_requested()) {
            return std::nullopt;
        }
        try {
            std::vector<ScannedItem> items =
                enumerator.items(base, rule.minAgeDays, rule.exclusions, now, stop);
            std::move(items.begin(), items.end(), std::back_inserter(result.items));
        } catch (const std::system_error&) {
            // The flag is the only trace of a base that cannot be read.
            result.hadAccessErrors = true;
        }
    }
    // After a stop the items are incomplete and must not pass for a result.
    return stop.stop_requested() ? std::nullopt : std::optional(std::move(result));
}

void RunningScan::run(const CleaningRule& rule)
{
    std::optional<CategoryResult> result;
    if (!stop.stop_requested()) {
        sink.send(RuleStarted{rule.id});
        result = scanRule(rule);
    }
    std::optional<RuleCompleted> completed;
    if (result) {
        completed = RuleCompleted{*result};
    }
    const std::lock_guard lock(mutex);
    if (result) {
        // Sent under the lock, so that Finished lists the results in the order of these events.
        sink.send(std::move(*completed));
        results.push_back(std::move(*result));
    }
    if (--unfinished == 0) {
        finish();
    }
}

void RunningScan::finish()
{
    if (!stop.stop_requested()) {
        sink.send(Finished{std::move(results)});
    }
    sink.finish();
}

} // namespace

ScanEngine::ScanEngine(std::string home, std::shared_ptr<const FileManager> fileManager,
                       std::shared_ptr<TaskPool> pool)
    : m_home(std::move(home)), m_fileManager(std::move(fileManager)), m_pool(std::move(pool))
{
}

EventStream<ScanEvent> ScanEngine::scan(std::span<const CleaningRule> rules, Timestamp now) const
{
    EventStream<ScanEvent> stream;
    std::vector<CleaningRule> kept;
    for (const CleaningRule& rule : rules) {
        if (rule.kind == RuleKind::fileSystem) {
            kept.push_back(rule);
        }
    }
    const EventSink<ScanEvent> sink = stream.sink();
    const std::shared_ptr<RunningScan> scan(
        new RunningScan{m_home, m_fileManager, now, sink, sink.stopToken(), kept.size()});
    if (kept.empty()) {
        scan->finish();
    }
    for (CleaningRule& rule : kept) {
        m_pool->submit([scan, rule = std::move(rule)] { scan->run(rule); });
    }
    return stream;
}

} // namespace CleanCore
