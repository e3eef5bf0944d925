#include "CleanCore/Commands/CommandScanEngine.h"
#include "CleanCore/Commands/Running/CommandRunning.h"
#include "CleanCore/Scanning/Scan.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/AppState.h"

#include <exception>
#include <utility>

namespace Zorvane {

namespace {

/// The thread of one scan, with all that it needs by value.
struct ScanThread
{
    CleanCore::Scan scan;
    std::function<CleanCore::RulesCatalog()> loadCatalog;
    std::function<CleanCore::Timestamp()> now;
    CleanCore::Scan::Progress progress;
    /// The catalog cannot be loaded.
    std::function<void()> failed;
    /// Not called for a scan that was cancelled.
    std::function<void(const CleanCore::SelectionState& results)> finished;
    std::stop_token cancelled;

    void operator()() const
    {
        std::optional<CleanCore::RulesCatalog> catalog;
        try {
            catalog = loadCatalog();
        } catch (const std::exception&) {
            // The screen goes back to where a scan can be started, without a message.
            failed();
            return;
        }
        if (auto results = scan.run(catalog->rules, catalog->rules, now(), progress, cancelled)) {
            finished(CleanCore::SelectionState(std::move(*results)));
        }
    }
};

} // namespace

const std::vector<CleanCore::CategoryResult>& AppState::categories() const
{
    static const std::vector<CleanCore::CategoryResult> none;
    return m_hasCategories ? m_selection.results() : none;
}

const std::optional<std::string>& AppState::currentRuleId() const
{
    return m_currentRuleId;
}

void AppState::startScan()
{
    if (m_phase == Phase::scanning || m_isCleaning) {
        return;
    }
    setPhase(Phase::scanning);
    m_hasCategories = false;
    m_reclaim.stop();
    emit categoriesChanged();
    setBytesFoundSoFar(0);

    m_scan = std::make_shared<std::stop_source>();
    // Makes a callback that posts to the main thread and is ignored once this scan is not current.
    const auto onMainThread = [this, scan = m_scan](auto operation) {
        return [this, scan, operation, queue = m_queue](const auto&... arguments) {
            queue->post([this, scan, operation, arguments...] {
                if (m_scan == scan) {
                    operation(arguments...);
                }
            });
        };
    };
    const CleanCore::HomeEnvironment& home = m_environment.home;
    // Cancelling leaves the tools to end; only the end of the state ends them.
    const CleanCore::CommandScanEngine tools(m_environment.commandRunner(m_end.get_token()),
                                             m_environment.tools);
    ScanThread thread{
        .scan = CleanCore::Scan(
            home.home, home.fileManager, home.pool,
            [tools](auto rules, const std::stop_token& /*stop*/) { return tools.scan(rules); }),
        .loadCatalog = m_environment.loadCatalog,
        .now = m_environment.now,
        .progress =
            {
                .ruleStarted =
                    onMainThread([this](const std::string& ruleId) { setCurrentRuleId(ruleId); }),
                .bytesFound =
                    onMainThread([this](std::int64_t bytes) { setBytesFoundSoFar(bytes); }),
                .filesScanned = onMainThread([this] { setCurrentRuleId(std::nullopt); }),
            },
        .failed = onMainThread([this] { setPhase(Phase::ready); }),
        .finished = onMainThread(
            [this](const CleanCore::SelectionState& results) { publishResults(results); }),
        .cancelled = m_scan->get_token(),
    };
    // Never joined: it may hang in the kernel. All that it uses is its own or shared.
    std::thread(std::move(thread)).detach();
}

void AppState::cancelScan()
{
    if (m_scan) {
        m_scan->request_stop();
        m_scan = nullptr;
    }
    setCurrentRuleId(std::nullopt);
    m_reclaim.choose(m_selection);
    setPhase(categories().empty() ? Phase::ready : Phase::results);
}

void AppState::publishResults(const CleanCore::SelectionState& results)
{
    if (m_showConfirmation) {
        // The confirmation is about the old results.
        setShowConfirmation(false);
    }
    // Freeing a million items takes a while, so the pool does it.
    m_environment.home.pool->submit([old = std::exchange(m_selection, results)] {});
    m_hasCategories = true;
    m_reclaim.begin(m_selection);
    emit categoriesChanged();
    emit selectionChanged();
    setCleaningReport(std::nullopt);
    setCurrentRuleId(std::nullopt);
    setPhase(Phase::results);
}

void AppState::setCurrentRuleId(std::optional<std::string> ruleId)
{
    m_currentRuleId = std::move(ruleId);
    emit currentRuleIdChanged();
}

void AppState::setBytesFoundSoFar(std::int64_t bytes)
{
    m_bytesFoundSoFar = bytes;
    emit bytesFoundSoFarChanged();
}

} // namespace Zorvane
