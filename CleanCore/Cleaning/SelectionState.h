#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Scanning/CategoryResult.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace CleanCore {

/// The user's choice among the results of one scan. A value: copies are independent, and cheap
/// since they share the results, which never change. Items are identified by the bytes of their
/// paths. Categories and items can also be given by their positions in results(), which saves the
/// look-up; positions must be valid.
class SelectionState
{
public:
    /// Starts with all items of safe file-system rules chosen.
    explicit SelectionState(std::vector<CategoryResult> results = {});

    [[nodiscard]] const std::vector<CategoryResult>& results() const;

    [[nodiscard]] bool isSelected(std::string_view ruleId, std::string_view path) const;
    [[nodiscard]] bool isSelected(std::size_t category, std::size_t item) const;

    /// Whether a category has items and all of them are chosen.
    [[nodiscard]] bool isWhollySelected(std::size_t category) const;

    /// Flips one item; in a category that is cleared as a whole, sets all others to the same. A
    /// path that is not in the results can be chosen too, but has no effect on sums and selections.
    void toggle(std::string_view ruleId, std::string_view path);

    /// Chooses every item of a category, or none.
    void setWhollySelected(std::size_t category, bool isSelected);

    /// Adds all items of safe file-system rules; others stay as they are.
    void selectAll();
    void deselectAll();

    /// Adds all items of the first category of this rule, whatever its tier and kind.
    void selectAll(std::string_view ruleId);
    void deselectAll(std::string_view ruleId);

    /// Total size of the chosen items.
    [[nodiscard]] std::int64_t selectedBytes() const;
    [[nodiscard]] std::int64_t selectedBytes(std::size_t category) const;
    [[nodiscard]] std::size_t selectedCount(std::size_t category) const;

    /// Returns the chosen items by rule, in the order of the results, without rules that have none.
    [[nodiscard]] std::vector<CleaningSelection> selections() const;

private:
    struct Index;

    std::shared_ptr<const Index> m_index;
    /// By key, one for each pair of rule id and path in the results.
    std::vector<bool> m_isKeySelected;
    /// Chosen pairs that are not in the results.
    std::set<std::pair<std::string, std::string>> m_others;
};

} // namespace CleanCore
