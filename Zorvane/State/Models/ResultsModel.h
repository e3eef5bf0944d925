#pragma once

#include "CleanCore/Scanning/CategoryResult.h"
#include "Zorvane/State/Models/RowModel.h"

#include <QtQml/qqmlregistration.h>
#include <cstddef>
#include <optional>
#include <vector>

namespace Zorvane {

class AppState;

/// The results as one flat list: for each category its header and, while it is expanded, its
/// details and its items; after them the card of the cloud drive. Main thread only.
///
/// Rows are identified by their position, never by what they show. Expansion belongs to the model
/// and ends with its results. A change of the selection costs one notification.
class ResultsModel : public Zorvane::RowModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Models has one.")
public:
    enum class RowKind { category, details, item, card };

    /// Roles that do not belong to the kind of a row have no value.
    enum Role {
        /// "category", "details", "item" or "card".
        KindRole = firstRole,
        /// Whether the row is the last of its category's card.
        IsLastRole,
        /// Whether the category's card has the selected look.
        HasSelectedLookRole,

        TitleRole,
        CountTextRole,
        /// Of a category or an item.
        SizeTextRole,
        /// Whether the check box of a category or an item is ticked. A category's is ticked if all
        /// its items are.
        IsSelectedRole,
        /// Whether the category's check box is offered.
        IsSelectableRole,
        IsDiagnosticRole,
        IsReviewRequiredRole,
        HadAccessErrorsRole,
        IsExpandedRole,

        ExplanationRole,
        /// Whether one link selects all items of the category.
        OffersSelectAllRole,

        /// An item's path as displayText().
        PathRole,
        /// What a clean will not remove of an item; empty if it removes all.
        ObstacleTextRole,
        /// How much free space an item brings, where it may be less than its size; else empty.
        ReclaimTextRole,
        /// Why that is so.
        ReclaimReasonRole,
    };
    Q_ENUM(Role)

    explicit ResultsModel(AppState& state);

    /// Opens or closes the category of a header row.
    Q_INVOKABLE void toggleExpanded(int row);
    /// Ticks a header's or an item's check box. Where a tool clears only whole areas, the boxes of
    /// their items go together.
    Q_INVOKABLE void setSelected(int row, bool isSelected);
    /// The links of the details row.
    Q_INVOKABLE void selectAll(int row);
    Q_INVOKABLE void clearSelection(int row);

protected:
    [[nodiscard]] std::size_t rows() const override;
    [[nodiscard]] QVariant value(std::size_t row, int role) const override;

private:
    struct Place
    {
        RowKind kind = RowKind::card;
        std::size_t category = 0;
        std::size_t item = 0;
    };

    /// Nothing beyond the last row.
    [[nodiscard]] std::optional<Place> placeOf(std::size_t row) const;
    /// The place of a row number from QML, which may be any number.
    [[nodiscard]] std::optional<Place> placeOfRow(int row) const;
    [[nodiscard]] std::size_t rowsBelowHeader(std::size_t category) const;
    [[nodiscard]] QVariant dataOfCategory(std::size_t category, int role) const;
    [[nodiscard]] QVariant dataOfDetails(std::size_t category, int role) const;
    [[nodiscard]] QVariant dataOfItem(const Place& place, int role) const;
    [[nodiscard]] QString reclaimText(const Place& place, int role) const;
    [[nodiscard]] QString reachedText(const CleanCore::CategoryResult& result) const;
    void rebuild();
    void refreshSelection();
    void refreshReclaim();
    void updateSelectedLooks();

    AppState& m_state;
    /// One for each category.
    std::vector<bool> m_isExpanded;
    /// One for each category. Cached, since every row asks for it and finding out visits all items.
    std::vector<bool> m_hasSelectedLook;
};

} // namespace Zorvane
