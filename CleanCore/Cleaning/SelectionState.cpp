#include "CleanCore/Cleaning/SelectionState.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

std::size_t SelectionState::Hash::operator()(KeyView key) const
{
    const std::hash<std::string_view> hash;
    constexpr std::size_t spread = 31;
    return hash(key.ruleId) * spread + hash(key.path);
}

SelectionState::SelectionState(std::vector<CategoryResult> results)
    : m_results(std::make_shared<const std::vector<CategoryResult>>(std::move(results)))
{
    selectAll();
}

bool SelectionState::isSelected(std::string_view ruleId, std::string_view path) const
{
    return m_selected.contains(KeyView(ruleId, path));
}

void SelectionState::toggle(std::string_view ruleId, std::string_view path)
{
    const auto found = m_selected.find(KeyView(ruleId, path));
    if (found != m_selected.end()) {
        m_selected.erase(found);
    } else {
        m_selected.insert({std::string(ruleId), std::string(path)});
    }
}

void SelectionState::selectAll()
{
    for (const CategoryResult& category : *m_results) {
        if (category.rule.tier == RuleTier::safe && category.rule.kind == RuleKind::fileSystem) {
            addItems(category);
        }
    }
}

void SelectionState::deselectAll()
{
    m_selected.clear();
}

void SelectionState::selectAll(std::string_view ruleId)
{
    const auto category =
        std::find_if(m_results->begin(), m_results->end(),
                     [&](const CategoryResult& result) { return result.rule.id == ruleId; });
    if (category != m_results->end()) {
        addItems(*category);
    }
}

void SelectionState::deselectAll(std::string_view ruleId)
{
    std::erase_if(m_selected, [&](const SelectionKey& key) { return key.ruleId == ruleId; });
}

std::int64_t SelectionState::selectedBytes() const
{
    std::int64_t bytes = 0;
    for (const CategoryResult& category : *m_results) {
        for (const ScannedItem& item : category.items) {
            bytes += isSelected(category.rule.id, item.path) ? item.sizeBytes : 0;
        }
    }
    return bytes;
}

std::vector<CleaningSelection> SelectionState::selections() const
{
    std::vector<CleaningSelection> selections;
    for (const CategoryResult& category : *m_results) {
        std::vector<ScannedItem> chosen;
        for (const ScannedItem& item : category.items) {
            if (isSelected(category.rule.id, item.path)) {
                chosen.push_back(item);
            }
        }
        if (!chosen.empty()) {
            selections.push_back({category.rule, std::move(chosen)});
        }
    }
    return selections;
}

void SelectionState::addItems(const CategoryResult& category)
{
    for (const ScannedItem& item : category.items) {
        m_selected.insert({category.rule.id, item.path});
    }
}

} // namespace CleanCore
