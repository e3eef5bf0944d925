#include "Zorvane/State/Models/ConfirmationModel.h"

#include "Zorvane/Desktop/StyledText.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/RuleDisplay.h"

namespace Zorvane {

void ConfirmationModel::follow(AppState& appState)
{
    connect(&appState, &AppState::categoriesChanged, this, &ConfirmationModel::rebuild);
    connect(&appState, &AppState::selectionChanged, this, &ConfirmationModel::rebuild);
    rebuild();
}

QString ConfirmationModel::acknowledgement()
{
    return tr("I understand that the selected **review required** items (%1) may "
              "**not be recoverable**.");
}

QString ConfirmationModel::acknowledgementText() const
{
    return styledText(acknowledgement()).arg(m_reviewTitles.toHtmlEscaped());
}

QString ConfirmationModel::plainAcknowledgementText() const
{
    return plainText(acknowledgement()).arg(m_reviewTitles);
}

int ConfirmationModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ConfirmationModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case TitleRole:
        return row.title;
    case IsReviewRequiredRole:
        return row.isReviewRequired;
    case SizeTextRole:
        return row.sizeText;
    default:
        return {};
    }
}

QHash<int, QByteArray> ConfirmationModel::roleNames() const
{
    return {{TitleRole, "title"},
            {IsReviewRequiredRole, "isReviewRequired"},
            {SizeTextRole, "sizeText"}};
}

void ConfirmationModel::rebuild()
{
    beginResetModel();
    const ByteCountFormatter& formatter = appState()->byteCountFormatter();
    m_rows.clear();
    for (std::size_t category = 0; category < appState()->categories().size(); ++category) {
        const CleanCore::CleaningRule& rule = appState()->categories()[category].rule;
        const std::int64_t bytes = appState()->selectedBytes(category);
        if (bytes >= 1) {
            m_rows.push_back({RuleDisplay::title(rule.id, appState()->texts()),
                              rule.tier == CleanCore::RuleTier::reviewRequired,
                              formatter.string(bytes)});
        }
    }
    m_totalText = formatter.string(appState()->selection().selectedBytes());
    m_warnings.clear();
    for (const QString& warning : appState()->selectedTierBWarnings()) {
        m_warnings.push_back(warning);
    }
    QStringList titles;
    for (const AppState::TierBCategory& category : appState()->selectedTierBCategories()) {
        titles.push_back(category.title);
    }
    m_needsAcknowledgement = !titles.empty();
    m_reviewTitles = titles.join(QStringLiteral(", "));
    endResetModel();
    emit changed();
}

} // namespace Zorvane
