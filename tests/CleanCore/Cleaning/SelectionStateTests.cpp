#include "CleanCore/Cleaning/SelectionState.h"

#include <functional>
#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

CategoryResult category(const std::string& id, RuleTier tier, RuleKind kind,
                        const std::vector<std::string>& paths)
{
    CategoryResult result;
    result.rule.id = id;
    result.rule.tier = tier;
    result.rule.kind = kind;
    std::int64_t size = 1;
    for (const std::string& path : paths) {
        result.items.push_back({path, size});
        size *= 10;
    }
    return result;
}

SelectionState sample()
{
    using enum RuleTier;
    using enum RuleKind;
    std::vector<CategoryResult> results = {
        category("review", reviewRequired, fileSystem, {"r1", "same"}),
        category("caches", safe, fileSystem, {"c1", "c2", "c3"}),
        category("tool", safe, command, {"t1", "t2"}),
        category("logs", safe, fileSystem, {"l1", "same"}),
        category("forms", reviewRequired, fileSystem, {"\u00e9", "e\u0301", "\xff", ""}),
        category("logs", reviewRequired, fileSystem, {"l3"}),
        category("empty", safe, fileSystem, {}),
        category("whole", safe, command, {"w1", "w2"}),
    };
    results.back().isClearedAsWhole = true;
    return SelectionState(std::move(results));
}

/// "rule: item item |" for each selection, with how many others there are, and the bytes.
std::string chosen(const SelectionState& state)
{
    std::string text;
    for (const CleaningSelection& selection : state.selections()) {
        text += selection.rule.id + ":";
        for (const ScannedItem& item : selection.items) {
            text += " " + item.path;
        }
        text += selection.itemsLeftOut == 0 ? " | "
                                            : " +" + std::to_string(selection.itemsLeftOut) + " | ";
    }
    return text + std::to_string(state.selectedBytes());
}

} // namespace

TEST(SelectionState, HoldsWhatWasChosenLast)
{
    using Choose = std::function<void(SelectionState&)>;
    const std::pair<Choose, const char*> rows[] = {
        {[](auto&) {}, "caches: c1 c2 c3 | logs: l1 same | 122"},
        {[](auto& s) { s.toggle("caches", "c2"); }, "caches: c1 c3 +1 | logs: l1 same | 112"},
        {[](auto& s) { s.toggle("caches", "c2"), s.toggle("caches", "c2"); },
         "caches: c1 c2 c3 | logs: l1 same | 122"},
        {[](auto& s) { s.deselectAll(); }, "0"},
        {[](auto& s) { s.toggle("review", "same"), s.toggle("caches", "c1"), s.selectAll(); },
         "review: same +1 | caches: c1 c2 c3 | logs: l1 same | 132"},
        {[](auto& s) { s.deselectAll(), s.toggle("logs", "same"); }, "logs: same +1 | 10"},
        {[](auto& s) { s.selectAll("review"); },
         "review: r1 same | caches: c1 c2 c3 | logs: l1 same | 133"},
        {[](auto& s) { s.deselectAll(), s.selectAll("tool"); }, "tool: t1 t2 | 11"},
        {[](auto& s) { s.deselectAll("caches"); }, "logs: l1 same | 11"},
        {[](auto& s) { s.selectAll("none"), s.deselectAll("none"), s.toggle("caches", "none"); },
         "caches: c1 c2 c3 | logs: l1 same | 122"},
        {[](auto& s) { s.deselectAll(), s.toggle("whole", "w2"); }, "whole: w1 w2 | 11"},
        {[](auto& s) { s.selectAll("whole"), s.toggle("whole", "w1"); },
         "caches: c1 c2 c3 | logs: l1 same | 122"},
        // Of two areas of one rule the first is meant.
        {[](auto& s) { s.deselectAll(), s.selectAll("logs"); }, "logs: l1 same | 11"},
        {[](auto& s) { s.deselectAll(), s.toggle("forms", "e\u0301"), s.toggle("forms", ""); },
         "forms: e\u0301  +2 | 1010"},
        {[](auto& s) { s.deselectAll(), s.setWhollySelected(4, true), s.toggle("forms", "\xff"); },
         "forms: \u00e9 e\u0301  +1 | 1011"},
    };
    for (const auto& [choose, expected] : rows) {
        SelectionState state = sample();
        const SelectionState copy = state;
        choose(state);
        EXPECT_EQ(chosen(state), expected);
        EXPECT_EQ(chosen(copy), rows[0].second) << "a copy has a choice of its own";
    }
}

TEST(SelectionState, AnswersByIdAndByPosition)
{
    SelectionState state = sample();
    EXPECT_TRUE(state.isSelected("logs", "same") && state.isSelected(3, 1));
    EXPECT_FALSE(state.isSelected("review", "same") || state.isSelected(0, 1));
    EXPECT_TRUE(state.isWhollySelected(1));
    EXPECT_FALSE(state.isWhollySelected(6)) << "nothing is not all";
    state.toggle("caches", "c3");
    EXPECT_FALSE(state.isWhollySelected(1));
    EXPECT_EQ(state.selectedCount(1), 2U);
    EXPECT_EQ(state.selectedBytes(1), 11);
    state.toggle("caches", "unknown");
    EXPECT_TRUE(state.isSelected("caches", "unknown"));
    state.deselectAll("caches");
    EXPECT_FALSE(state.isSelected("caches", "unknown"));
    state.toggle("caches", "unknown");
    state.deselectAll();
    EXPECT_FALSE(state.isSelected("caches", "unknown"));
}

} // namespace CleanCoreTests
