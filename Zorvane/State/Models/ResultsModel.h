#pragma once

#include "Zorvane/State/Models/StateListModel.h"

#include <QtQml/qqmlregistration.h>
#include <cstddef>
#include <optional>
#include <vector>

namespace Zorvane {

/// The results as one flat list: for each category its header and, while it is expanded, its
/// details and its items; after them the card of the cloud drive. Main thread only.
///
/// Rows are identified by their position, never by what they show. Expansion belongs to the model
/// and ends with the results that it was about. A change of the selection costs one notification.
class ResultsModel : public Zorvane::StateListModel
{
    Q_OBJECT
    QML_ELEMENT
public:
    enum class RowKind { category, details, item, card };

    /// What a row shows. Roles that are no part of a row's kind have no value.
    enum Role {
        /// "category", "details", "item" or "card".
        KindRole = Qt::UserRole + 1,
        /// Whether the row is the last of its category's card.
        IsLastRole,
        /// Whether the category's card has the selected look.
        HasSelectedLookRole,

        TitleRole,
        CountTextRole,
        /// Also an item's.
        SizeTextRole,
        /// Also an item's: whether the check box is ticked. A category's is when all items are.
        IsSelectedRole,
        /// Whether the category's check box is offered.
        IsSelectableRole,
        IsDiagnosticRole,
        IsReviewRequiredRole,
        HadAccessErrorsRole,
        IsExpandedRole,

        ExplanationRole,
        /// Whether all items of the category can be chosen by one link.
        OffersSelectAllRole,

        /// An item's path, for people's eyes.
        PathRole,
    };

    using StateListModel::StateListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Opens or closes the category of a header row.
    Q_INVOKABLE void toggleExpanded(int row);
    /// Ticks a header's or an item's check box. Where a tool clears only whole areas, the boxes of
    /// their items go together.
    Q_INVOKABLE void setSelected(int row, bool isSelected);
    /// The links of the details row.
    Q_INVOKABLE void selectAll(int row);
    Q_INVOKABLE void clearSelection(int row);

protected:
    void follow(AppState& appState) override;

private:
    struct Place
    {
        RowKind kind = RowKind::card;
        std::size_t category = 0;
        std::size_t item = 0;
    };

    [[nodiscard]] std::optional<Place> placeOf(int row) const;
    [[nodiscard]] std::size_t rowsBelowHeader(std::size_t category) const;
    [[nodiscard]] QVariant dataOfCategory(std::size_t category, int role) const;
    [[nodiscard]] QVariant dataOfDetails(std::size_t category, int role) const;
    [[nodiscard]] QVariant dataOfItem(const Place& place, int role) const;
    void rebuild();
    void refreshSelection();
    void updateSelectedLooks();

    /// One for each category.
    std::vector<bool> m_isExpanded;
    /// One for each category. Every row of a category asks for it, and it takes all its items.
    std::vector<bool> m_hasSelectedLook;
};

} // namespace Zorvane
