#include "CleanCore/Commands/Running/CommandRunning.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/ScanJob.h"

#include <utility>

namespace Zorvane {

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
    emit categoriesChanged();
    setBytesFoundSoFar(0);

    m_scan = std::make_shared<std::stop_source>();
    // Carries a call to the main thread, where it counts for as long as this scan does.
    const auto onMainThread = [this, scan = m_scan](auto operation) {
        return [this, scan, operation, queue = m_queue](const auto&... arguments) {
            queue->post([this, scan, operation, arguments...] {
                if (m_scan == scan) {
                    operation(arguments...);
                }
            });
        };
    };
    const ScanJob job{
        .home = m_environment.home,
        .tools = m_environment.tools,
        .runner = m_environment.commandRunner(m_end.get_token()),
        .loadCatalog = m_environment.loadCatalog,
        .now = m_environment.now,
        .failed = onMainThread([this] { setPhase(Phase::ready); }),
        .ruleStarted =
            onMainThread([this](const std::string& ruleId) { setCurrentRuleId(ruleId); }),
        .bytesFound = onMainThread([this](std::int64_t bytes) { setBytesFoundSoFar(bytes); }),
        .filesScanned = onMainThread([this] { setCurrentRuleId(std::nullopt); }),
        .finished = onMainThread(
            [this](const CleanCore::SelectionState& results) { publishResults(results); }),
    };
    // Never waited for: it may hang in the kernel. All that it uses is its own or shared.
    std::thread([job, cancelled = m_scan->get_token()] { job.run(cancelled); }).detach();
}

void AppState::cancelScan()
{
    if (m_scan) {
        m_scan->request_stop();
        m_scan = nullptr;
    }
    setCurrentRuleId(std::nullopt);
    setPhase(categories().empty() ? Phase::ready : Phase::results);
}

void AppState::publishResults(const CleanCore::SelectionState& results)
{
    if (m_showConfirmation) {
        // It was asked about what is no longer there.
        setShowConfirmation(false);
    }
    // A million items take a while to be freed, and the main thread has other things to do.
    m_environment.home.pool->submit([old = std::exchange(m_selection, results)] {});
    m_hasCategories = true;
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
