#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Scanning/CategoryResult.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace CleanCore {

/// What the user chose among the results of one scan. A value: copies are independent, though they
/// share the results, which never change. Items are told apart by the bytes of their paths.
class SelectionState
{
public:
    /// Starts with every item of safe file-system rules chosen.
    explicit SelectionState(std::vector<CategoryResult> results = {});

    [[nodiscard]] const std::vector<CategoryResult>& results() const { return *m_results; }

    [[nodiscard]] bool isSelected(std::string_view ruleId, std::string_view path) const;

    /// Flips one item; a path that is not in the results may be chosen and counts for nothing.
    void toggle(std::string_view ruleId, std::string_view path);

    /// Adds every item of safe file-system rules; others stay as they are.
    void selectAll();
    void deselectAll();

    /// Adds every item of the first category of this rule, of any tier and kind.
    void selectAll(std::string_view ruleId);
    void deselectAll(std::string_view ruleId);

    /// Total size of the chosen items.
    [[nodiscard]] std::int64_t selectedBytes() const;

    /// The chosen items by rule, in the order of the results; rules without any are left out.
    [[nodiscard]] std::vector<CleaningSelection> selections() const;

private:
    struct SelectionKey
    {
        std::string ruleId;
        std::string path;
    };
    struct KeyView
    {
        std::string_view ruleId;
        std::string_view path;
        KeyView(std::string_view rule, std::string_view item) : ruleId(rule), path(item) {}
        // NOLINTNEXTLINE(google-explicit-constructor): lookups take either.
        KeyView(const SelectionKey& key) : ruleId(key.ruleId), path(key.path) {}
        [[nodiscard]] bool operator==(const KeyView&) const = default;
    };
    struct Hash
    {
        using is_transparent = void;
        [[nodiscard]] std::size_t operator()(KeyView key) const;
    };
    struct Equal
    {
        using is_transparent = void;
        [[nodiscard]] bool operator()(KeyView a, KeyView b) const { return a == b; }
    };
    using Keys = std::unordered_set<SelectionKey, Hash, Equal>;

    void addItems(const CategoryResult& category);

    std::shared_ptr<const std::vector<CategoryResult>> m_results;
    Keys m_selected;
};

} // namespace CleanCore
