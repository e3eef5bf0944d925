#include "Zorvane/State/Models/ResultsModel.h"

#include "Words/LeftInPlaceText.h"
#include "Zorvane/Desktop/DisplayText.h"
#include "Zorvane/State/AppState.h"
#include "Zorvane/State/Models/ReclaimRow.h"
#include "Zorvane/State/Models/RuleDisplay.h"

#include <algorithm>

namespace Zorvane {

namespace {

using CleanCore::CategoryResult;
using CleanCore::RuleKind;
using CleanCore::RuleTier;

constexpr std::size_t fewestForSelectAll = 2;

QString kindName(ResultsModel::RowKind kind)
{
    switch (kind) {
    case ResultsModel::RowKind::category:
        return QStringLiteral("category");
    case ResultsModel::RowKind::details:
        return QStringLiteral("details");
    case ResultsModel::RowKind::item:
        return QStringLiteral("item");
    case ResultsModel::RowKind::card:
        return QStringLiteral("card");
    }
    return {};
}

bool offersSelectAll(const CategoryResult& category)
{
    return category.items.size() >= fewestForSelectAll &&
           (category.rule.kind == RuleKind::fileSystem || category.rule.id == "tm-local-snapshots");
}

} // namespace

ResultsModel::ResultsModel(AppState& state) : m_state(state)
{
    connect(&state, &AppState::categoriesChanged, this, &ResultsModel::rebuild);
    connect(&state, &AppState::selectionChanged, this, &ResultsModel::refreshSelection);
    connect(&state.reclaim(), &ReclaimState::itemsChanged, this, &ResultsModel::refreshReclaim);
    rebuild();
}

std::size_t ResultsModel::rows() const
{
    std::size_t rows = 1;
    for (std::size_t category = 0; category < m_isExpanded.size(); ++category) {
        rows += 1 + rowsBelowHeader(category);
    }
    return rows;
}

std::size_t ResultsModel::rowsBelowHeader(std::size_t category) const
{
    return m_isExpanded[category] ? 1 + m_state.categories()[category].items.size() : 0;
}

std::optional<ResultsModel::Place> ResultsModel::placeOf(std::size_t row) const
{
    std::size_t rest = row;
    for (std::size_t category = 0; category < m_isExpanded.size(); ++category) {
        const std::size_t below = rowsBelowHeader(category);
        if (rest == 0) {
            return Place{RowKind::category, category};
        }
        if (rest <= below) {
            return rest == 1 ? Place{RowKind::details, category}
                             : Place{RowKind::item, category, rest - 2};
        }
        rest -= 1 + below;
    }
    return rest == 0 ? std::optional(Place{RowKind::card}) : std::nullopt;
}

std::optional<ResultsModel::Place> ResultsModel::placeOfRow(int row) const
{
    return row < 0 ? std::nullopt : placeOf(static_cast<std::size_t>(row));
}

QVariant ResultsModel::value(std::size_t row, int role) const
{
    const std::optional<Place> place = placeOf(row);
    if (!place) {
        return {};
    }
    switch (role) {
    case KindRole:
        return kindName(place->kind);
    case HasSelectedLookRole:
        return place->kind != RowKind::card && m_hasSelectedLook[place->category];
    case IsLastRole: {
        const std::optional<Place> next = placeOf(row + 1);
        return !next || next->kind == RowKind::category || next->kind == RowKind::card;
    }
    default:
        break;
    }
    switch (place->kind) {
    case RowKind::category:
        return dataOfCategory(place->category, role);
    case RowKind::details:
        return dataOfDetails(place->category, role);
    case RowKind::item:
        return dataOfItem(*place, role);
    case RowKind::card:
        break;
    }
    return {};
}

QVariant ResultsModel::dataOfCategory(std::size_t category, int role) const
{
    const CategoryResult& result = m_state.categories()[category];
    const bool isReviewRequired = result.rule.tier == RuleTier::reviewRequired;
    const ByteCountFormatter& formatter = m_state.byteCountFormatter();
    switch (role) {
    case TitleRole:
        return RuleDisplay::title(result.rule.id, m_state.texts());
    case CountTextRole:
        return tr("%1 items").arg(formatter.count(static_cast<std::int64_t>(result.items.size())));
    case SizeTextRole:
        return formatter.string(result.totalBytes());
    case IsSelectedRole:
        return m_state.selection().isWhollySelected(category);
    case IsSelectableRole:
        return !isReviewRequired;
    case IsDiagnosticRole:
        return isReviewRequired && result.rule.kind == RuleKind::command;
    case IsReviewRequiredRole:
        return isReviewRequired;
    case HadAccessErrorsRole:
        return result.hadAccessErrors;
    case IsExpandedRole:
        return static_cast<bool>(m_isExpanded[category]);
    default:
        return {};
    }
}

QVariant ResultsModel::dataOfDetails(std::size_t category, int role) const
{
    const CategoryResult& result = m_state.categories()[category];
    switch (role) {
    case ExplanationRole:
        return QString::fromStdString(
                   m_state.texts().text("category.explanation." + result.rule.id)) +
               reachedText(result);
    case OffersSelectAllRole:
        return offersSelectAll(result);
    case TitleRole:
        return RuleDisplay::title(result.rule.id, m_state.texts());
    default:
        return {};
    }
}

QVariant ResultsModel::dataOfItem(const Place& place, int role) const
{
    const auto& item = m_state.categories()[place.category].items[place.item];
    switch (role) {
    case PathRole:
        return displayText(item.path);
    case ObstacleTextRole:
        return item.obstacle == CleanCore::Obstacle::none ? QString()
                                                          : tr(Words::obstacleText(item.obstacle));
    case SizeTextRole:
        return m_state.byteCountFormatter().string(item.sizeBytes);
    case IsSelectedRole:
        return m_state.selection().isSelected(place.category, place.item);
    case ReclaimTextRole:
    case ReclaimReasonRole:
        return reclaimText(place, role);
    default:
        return {};
    }
}

QString ResultsModel::reclaimText(const Place& place, int role) const
{
    const auto& item = m_state.categories()[place.category].items[place.item];
    const auto reclaim = m_state.reclaim().ofItem(m_state.selection(), place.category, place.item);
    // An obstacle is told by itself.
    if (!reclaim || !reclaim->isLessThan(item.sizeBytes) ||
        item.obstacle != CleanCore::Obstacle::none) {
        return {};
    }
    const ByteCountFormatter& formatter = m_state.byteCountFormatter();
    if (role == ReclaimTextRole) {
        return Zorvane::reclaimText(tr("gives back %1"), *reclaim, formatter);
    }
    QStringList reasons;
    for (const ReclaimRow& row : reclaimRows(reclaim->causes, 0, formatter)) {
        reasons.push_back(tr("%1: %2").arg(row.title, row.detail));
    }
    return reasons.join(u'\n');
}

/// Sentences about the entries that the area leaves to others, each on a line of its own.
QString ResultsModel::reachedText(const CategoryResult& result) const
{
    constexpr std::size_t named = 3;
    QString text;
    const auto& entries = result.reachedEntries;
    for (std::size_t i = 0; i < std::min(named, entries.size()); ++i) {
        text += u'\n' + tr("Not listed here: %1, which holds items of “%2”.")
                            .arg(displayName(entries[i].path),
                                 RuleDisplay::title(entries[i].ruleId, m_state.texts()));
    }
    if (entries.size() > named) {
        const auto others = static_cast<std::int64_t>(entries.size() - named);
        text += u'\n' + tr("and %1 more").arg(m_state.byteCountFormatter().count(others));
    }
    return text;
}

void ResultsModel::updateSelectedLooks()
{
    const auto& categories = m_state.categories();
    m_hasSelectedLook.resize(categories.size());
    for (std::size_t category = 0; category < categories.size(); ++category) {
        m_hasSelectedLook[category] =
            categories[category].rule.tier == RuleTier::safe && m_state.selectedBytes(category) > 0;
    }
}

void ResultsModel::toggleExpanded(int row)
{
    const std::optional<Place> place = placeOfRow(row);
    if (!place || place->kind != RowKind::category) {
        return;
    }
    const auto below = static_cast<int>(1 + m_state.categories()[place->category].items.size());
    if (m_isExpanded[place->category]) {
        beginRemoveRows({}, row + 1, row + below);
        m_isExpanded[place->category] = false;
        endRemoveRows();
    } else {
        beginInsertRows({}, row + 1, row + below);
        m_isExpanded[place->category] = true;
        endInsertRows();
    }
    emit dataChanged(index(row), index(row), {IsExpandedRole, IsLastRole});
}

void ResultsModel::setSelected(int row, bool isSelected)
{
    const std::optional<Place> place = placeOfRow(row);
    if (place && place->kind == RowKind::category) {
        m_state.categoryBinding(place->category).set(isSelected);
    } else if (place && place->kind == RowKind::item) {
        const CategoryResult& result = m_state.categories()[place->category];
        m_state.itemBinding(result.rule.id, result.items[place->item].path).set(isSelected);
    }
}

void ResultsModel::selectAll(int row)
{
    if (const std::optional<Place> place = placeOfRow(row)) {
        m_state.selectAll(m_state.categories()[place->category].rule.id);
    }
}

void ResultsModel::clearSelection(int row)
{
    if (const std::optional<Place> place = placeOfRow(row)) {
        m_state.deselectAll(m_state.categories()[place->category].rule.id);
    }
}

void ResultsModel::rebuild()
{
    beginResetModel();
    m_isExpanded.assign(m_state.categories().size(), false);
    updateSelectedLooks();
    endResetModel();
}

void ResultsModel::refreshSelection()
{
    updateSelectedLooks();
    emit dataChanged(index(0), index(rowCount() - 1), {IsSelectedRole, HasSelectedLookRole});
}

void ResultsModel::refreshReclaim()
{
    emit dataChanged(index(0), index(rowCount() - 1), {ReclaimTextRole, ReclaimReasonRole});
}

} // namespace Zorvane
