#include "Zorvane/State/Models/ConfirmationModel.h"

#include "Zorvane/Desktop/StyledText.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/RuleDisplay.h"

namespace Zorvane {

ConfirmationModel::ConfirmationModel(const AppState& state) : m_state(state)
{
    connect(&state, &AppState::categoriesChanged, this, &ConfirmationModel::changed);
    connect(&state, &AppState::selectionChanged, this, &ConfirmationModel::changed);
    connect(&state.reclaim(), &ReclaimState::changed, this, &ConfirmationModel::reclaimChanged);
}

QList<ConfirmationRow> ConfirmationModel::rows() const
{
    QList<ConfirmationRow> rows;
    for (std::size_t category = 0; category < m_state.categories().size(); ++category) {
        const std::int64_t bytes = m_state.selectedBytes(category);
        if (bytes >= 1) {
            const CleanCore::CleaningRule& rule = m_state.categories()[category].rule;
            rows.push_back({RuleDisplay::title(rule.id, m_state.texts()),
                            rule.tier == CleanCore::RuleTier::reviewRequired,
                            m_state.byteCountFormatter().string(bytes)});
        }
    }
    return rows;
}

QString ConfirmationModel::totalText() const
{
    return m_state.byteCountFormatter().string(m_state.selection().selectedBytes());
}

QString ConfirmationModel::reclaimText() const
{
    const auto& reclaim = m_state.reclaim().ofSelection();
    return reclaim ? Zorvane::reclaimText(tr("Free space will grow by %1"), *reclaim,
                                          m_state.byteCountFormatter())
                   : QString();
}

QList<ReclaimRow> ConfirmationModel::reclaimRows() const
{
    const auto& reclaim = m_state.reclaim().ofSelection();
    return reclaim ? Zorvane::reclaimRows(reclaim->causes, 0, m_state.byteCountFormatter())
                   : QList<ReclaimRow>();
}

QStringList ConfirmationModel::warnings() const
{
    const std::vector<QString> warnings = m_state.selectedTierBWarnings();
    return {warnings.begin(), warnings.end()};
}

bool ConfirmationModel::needsAcknowledgement() const
{
    return !m_state.selectedTierBCategories().empty();
}

QString ConfirmationModel::acknowledgement()
{
    return tr("I understand that the selected **review required** items (%1) may "
              "**not be recoverable**.");
}

QString ConfirmationModel::reviewTitles() const
{
    QStringList titles;
    for (const AppState::TierBCategory& category : m_state.selectedTierBCategories()) {
        titles.push_back(category.title);
    }
    return titles.join(QStringLiteral(", "));
}

QString ConfirmationModel::acknowledgementText() const
{
    return styledText(acknowledgement()).arg(reviewTitles().toHtmlEscaped());
}

QString ConfirmationModel::plainAcknowledgementText() const
{
    return plainText(acknowledgement()).arg(reviewTitles());
}

} // namespace Zorvane
