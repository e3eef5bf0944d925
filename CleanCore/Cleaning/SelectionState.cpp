#include "CleanCore/Cleaning/SelectionState.h"

#include "CleanCore/Support/SaturatingSum.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>
#include <unordered_map>

namespace CleanCore {

namespace {

struct KeyView
{
    std::string_view ruleId;
    std::string_view path;
    [[nodiscard]] bool operator==(const KeyView&) const = default;
};

struct KeyHash
{
    [[nodiscard]] std::size_t operator()(const KeyView& key) const
    {
        const std::hash<std::string_view> hash;
        constexpr std::size_t spread = 31;
        return hash(key.ruleId) * spread + hash(key.path);
    }
};

} // namespace

/// The results with a number for each key. Items of the same rule and path share a key.
struct SelectionState::Index
{
    explicit Index(std::vector<CategoryResult> given) : results(std::move(given))
    {
        std::size_t count = 0;
        for (const CategoryResult& category : results) {
            count += category.items.size();
        }
        if (count > std::numeric_limits<std::uint32_t>::max()) {
            throw std::length_error("more items than can be numbered");
        }
        keyOf.reserve(count);
        for (const CategoryResult& category : results) {
            std::vector<std::uint32_t>& numbers = keys.emplace_back();
            numbers.reserve(category.items.size());
            for (const ScannedItem& item : category.items) {
                const auto next = static_cast<std::uint32_t>(keyOf.size());
                numbers.push_back(
                    keyOf.try_emplace({category.rule.id, item.path}, next).first->second);
            }
        }
    }

    std::vector<CategoryResult> results;
    /// The numbers, by category and item.
    std::vector<std::vector<std::uint32_t>> keys;
    /// Its views point into `results`.
    std::unordered_map<KeyView, std::uint32_t, KeyHash> keyOf;
};

SelectionState::SelectionState(std::vector<CategoryResult> results)
    : m_index(std::make_shared<const Index>(std::move(results))),
      m_isKeySelected(m_index->keyOf.size())
{
    selectAll();
}

const std::vector<CategoryResult>& SelectionState::results() const
{
    return m_index->results;
}

bool SelectionState::isSelected(std::string_view ruleId, std::string_view path) const
{
    const auto found = m_index->keyOf.find({ruleId, path});
    return found != m_index->keyOf.end()
               ? m_isKeySelected[found->second]
               : m_others.contains({std::string(ruleId), std::string(path)});
}

bool SelectionState::isSelected(std::size_t category, std::size_t item) const
{
    return m_isKeySelected[m_index->keys[category][item]];
}

bool SelectionState::isWhollySelected(std::size_t category) const
{
    const auto& keys = m_index->keys[category];
    return !keys.empty() && std::all_of(keys.begin(), keys.end(), [&](std::uint32_t key) -> bool {
        return m_isKeySelected[key];
    });
}

void SelectionState::toggle(std::string_view ruleId, std::string_view path)
{
    const auto found = m_index->keyOf.find({ruleId, path});
    if (found != m_index->keyOf.end()) {
        m_isKeySelected[found->second].flip();
        const bool isSelected = m_isKeySelected[found->second];
        for (std::size_t category = 0; category < results().size(); ++category) {
            if (results()[category].isClearedAsWhole && results()[category].rule.id == ruleId) {
                setWhollySelected(category, isSelected);
            }
        }
        return;
    }
    auto other = std::pair(std::string(ruleId), std::string(path));
    if (m_others.erase(other) == 0) {
        m_others.insert(std::move(other));
    }
}

void SelectionState::setWhollySelected(std::size_t category, bool isSelected)
{
    for (const std::uint32_t key : m_index->keys[category]) {
        m_isKeySelected[key] = isSelected;
    }
}

void SelectionState::selectAll()
{
    for (std::size_t category = 0; category < results().size(); ++category) {
        const CleaningRule& rule = results()[category].rule;
        if (rule.tier == RuleTier::safe && rule.kind == RuleKind::fileSystem) {
            setWhollySelected(category, true);
        }
    }
}

void SelectionState::deselectAll()
{
    m_isKeySelected.assign(m_isKeySelected.size(), false);
    m_others.clear();
}

void SelectionState::selectAll(std::string_view ruleId)
{
    for (std::size_t category = 0; category < results().size(); ++category) {
        if (results()[category].rule.id == ruleId) {
            setWhollySelected(category, true);
            return;
        }
    }
}

void SelectionState::deselectAll(std::string_view ruleId)
{
    for (std::size_t category = 0; category < results().size(); ++category) {
        if (results()[category].rule.id == ruleId) {
            setWhollySelected(category, false);
        }
    }
    std::erase_if(m_others, [&](const auto& other) { return other.first == ruleId; });
}

std::int64_t SelectionState::selectedBytes() const
{
    std::int64_t bytes = 0;
    for (std::size_t category = 0; category < results().size(); ++category) {
        bytes = saturatingSum(bytes, selectedBytes(category));
    }
    return bytes;
}

std::int64_t SelectionState::selectedBytes(std::size_t category) const
{
    const std::vector<ScannedItem>& items = results()[category].items;
    std::int64_t bytes = 0;
    for (std::size_t item = 0; item < items.size(); ++item) {
        if (isSelected(category, item)) {
            bytes = saturatingSum(bytes, items[item].sizeBytes);
        }
    }
    return bytes;
}

std::size_t SelectionState::selectedCount(std::size_t category) const
{
    const auto& keys = m_index->keys[category];
    return static_cast<std::size_t>(std::count_if(
        keys.begin(), keys.end(), [&](std::uint32_t key) -> bool { return m_isKeySelected[key]; }));
}

std::vector<CleaningSelection> SelectionState::selections() const
{
    std::vector<CleaningSelection> selections;
    for (std::size_t category = 0; category < results().size(); ++category) {
        const CategoryResult& result = results()[category];
        std::vector<ScannedItem> chosen;
        for (std::size_t item = 0; item < result.items.size(); ++item) {
            if (isSelected(category, item)) {
                chosen.push_back(result.items[item]);
            }
        }
        if (!chosen.empty()) {
            const std::size_t itemsLeftOut = result.items.size() - chosen.size();
            selections.push_back(
                {result.rule, std::move(chosen), itemsLeftOut, result.isShownOnly});
        }
    }
    return selections;
}

} // namespace CleanCore
