#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/Running/CommandRunning.h"
#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/RuleDisplay.h"

#include <QPointer>
#include <functional>
#include <utility>

namespace Zorvane {

using CleanCore::CleaningReport;
using CleanCore::RuleTier;

const std::optional<CleaningReport>& AppState::cleaningReport() const
{
    return m_cleaningReport;
}

std::optional<std::int64_t> AppState::lastVisibleFreedBytes() const
{
    return m_lastVisibleFreedBytes;
}

BooleanBinding AppState::itemBinding(std::string ruleId, std::string path)
{
    const QPointer<AppState> self(this);
    return {[self, ruleId, path] { return self && self->m_selection.isSelected(ruleId, path); },
            [self, ruleId, path](bool isSelected) {
                if (self && self->m_selection.isSelected(ruleId, path) != isSelected) {
                    self->changeSelection([&](auto& selection) { selection.toggle(ruleId, path); });
                }
            }};
}

BooleanBinding AppState::categoryBinding(std::size_t category)
{
    // The position is valid only in these results.
    const QPointer<AppState> self(this);
    const void* const results = &m_selection.results();
    const auto isAlive = [self, results] {
        return self && self->m_hasCategories && &self->m_selection.results() == results;
    };
    return {[self, isAlive, category] {
                return isAlive() && self->m_selection.isWhollySelected(category);
            },
            [self, isAlive, category](bool isSelected) {
                if (!isAlive()) {
                    return;
                }
                const std::size_t all = self->categories()[category].items.size();
                if (self->m_selection.selectedCount(category) != (isSelected ? all : 0)) {
                    self->changeSelection([&](auto& selection) {
                        selection.setWhollySelected(category, isSelected);
                    });
                }
            }};
}

std::int64_t AppState::selectedBytes(std::size_t category) const
{
    return m_hasCategories ? m_selection.selectedBytes(category) : 0;
}

std::vector<QString> AppState::selectedTierBWarnings() const
{
    std::vector<QString> warnings;
    for (std::size_t category = 0; category < categories().size(); ++category) {
        const CleanCore::CleaningRule& rule = categories()[category].rule;
        if (rule.tier == RuleTier::reviewRequired && m_selection.selectedCount(category) > 0) {
            const std::string warning = texts().textOrEmpty("category.warning." + rule.id);
            if (!warning.empty()) {
                warnings.push_back(QString::fromStdString(warning));
            }
        }
    }
    return warnings;
}

std::vector<AppState::TierBCategory> AppState::selectedTierBCategories() const
{
    std::vector<TierBCategory> summary;
    for (std::size_t category = 0; category < categories().size(); ++category) {
        const CleanCore::CleaningRule& rule = categories()[category].rule;
        const auto count = static_cast<std::int64_t>(m_selection.selectedCount(category));
        if (rule.tier == RuleTier::reviewRequired && count > 0) {
            summary.push_back(
                {RuleDisplay::title(rule.id, texts()), m_selection.selectedBytes(category), count});
        }
    }
    return summary;
}

void AppState::selectAll(std::string_view ruleId)
{
    changeSelection([&](auto& selection) { selection.selectAll(ruleId); });
}

void AppState::deselectAll(std::string_view ruleId)
{
    changeSelection([&](auto& selection) { selection.deselectAll(ruleId); });
}

void AppState::changeSelection(const std::function<void(CleanCore::SelectionState&)>& change)
{
    change(m_selection);
    m_reclaim.choose(m_selection);
    emit selectionChanged();
}

void AppState::setShowConfirmation(bool isShown)
{
    m_showConfirmation = isShown;
    emit showConfirmationChanged();
}

void AppState::requestClean()
{
    setShowConfirmation(true);
}

void AppState::performClean()
{
    if (m_isCleaning) {
        return;
    }
    m_isCleaning = true;
    emit isCleaningChanged();
    setShowConfirmation(false);

    const CleanCore::HomeEnvironment& home = m_environment.home;
    // Unlike a listing, a removal that a tool has begun is never interrupted.
    const CleanCore::CommandCleanEngine tools(m_environment.commandRunner({}), m_environment.tools);
    CleanCore::Clean clean(home.home, home.fileManager, home.folders.protectedFolders,
                           std::bind_front(&CleanCore::CommandCleanEngine::run, tools),
                           m_reclaim.survey());
    // The clean examines the rest of what was chosen.
    m_reclaim.stop();
    m_clean = std::jthread([this, clean = std::move(clean), chosen = m_selection,
                            book = m_reclaim.book(), queue = m_queue](const std::stop_token& stop) {
        auto outcome = clean.run(book.selections(chosen), false, stop);
        queue->post(
            [this, outcome = std::move(outcome)]() mutable { finishClean(std::move(outcome)); });
    });
}

void AppState::finishClean(CleanCore::Clean::Outcome outcome)
{
    m_lastVisibleFreedBytes = outcome.growth.bytes();
    m_lastShortfall = outcome.shortfall();
    m_lastGrowth = std::move(outcome.growth);
    emit lastVisibleFreedBytesChanged();
    setCleaningReport(std::move(outcome.report));
    m_isCleaning = false;
    emit isCleaningChanged();
    closeWhenReady();
}

void AppState::closeReport()
{
    setCleaningReport(std::nullopt);
}

void AppState::setCleaningReport(std::optional<CleaningReport> report)
{
    std::swap(m_cleaningReport, report);
    emit cleaningReportChanged();
    if (report) {
        // Freeing so many paths takes a while, so the pool does it.
        m_environment.home.pool->submit([old = std::move(report)] {});
    }
}

} // namespace Zorvane
