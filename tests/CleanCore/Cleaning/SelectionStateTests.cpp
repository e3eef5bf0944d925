#include "CleanCore/Cleaning/SelectionState.h"

#include "tests/Support/Table.h"

#include <functional>
#include <gtest/gtest.h>
#include <regex>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

SelectionState sample()
{
    std::vector<CategoryResult> results;
    // Areas with their items; "!" marks an area that requires review, "$" one of a tool.
    for (const std::string& word :
         words("!review: r1 same caches: c1 c2 c3 $tool: t1 t2 logs: l1 same "
               "!forms: \u00e9 e\u0301 \xff !logs: l3 empty: $whole: w1 w2")) {
        if (word.ends_with(':')) {
            CleaningRule& rule = results.emplace_back().rule;
            rule.tier = word.starts_with('!') ? RuleTier::reviewRequired : RuleTier::safe;
            rule.kind = word.starts_with('$') ? RuleKind::command : RuleKind::fileSystem;
            rule.id = std::regex_replace(word, std::regex("[!$:]"), "");
        } else {
            constexpr std::int64_t sizes[] = {1, 10, 100};
            results.back().items.push_back({word, sizes[results.back().items.size()]});
        }
    }
    results.back().isClearedAsWhole = true;
    return SelectionState(std::move(results));
}

/// "rule: item item +1" for each selection, with how many others there are, and the bytes.
std::string chosen(const SelectionState& state)
{
    std::string text;
    for (const CleaningSelection& selection : state.selections()) {
        text += selection.rule.id + ":";
        for (const ScannedItem& item : selection.items) {
            text += " " + item.path;
        }
        text += " +" + std::to_string(selection.itemsLeftOut) + " | ";
    }
    return text + std::to_string(state.selectedBytes());
}

} // namespace

TEST(SelectionState, HoldsWhatWasChosenLast)
{
    const std::string atFirst = "caches: c1 c2 c3 +0 | logs: l1 same +0 | 122";
    const std::pair<std::function<void(SelectionState&)>, std::string> rows[] = {
        {[](auto&) {}, atFirst},
        {[](auto& s) { s.toggle("caches", "c2"); }, "caches: c1 c3 +1 | logs: l1 same +0 | 112"},
        {[](auto& s) { s.toggle("review", "same"), s.toggle("caches", "c1"), s.selectAll(); },
         "review: same +1 | caches: c1 c2 c3 +0 | logs: l1 same +0 | 132"},
        {[](auto& s) { s.deselectAll(), s.toggle("logs", "same"); }, "logs: same +1 | 10"},
        {[](auto& s) { s.deselectAll("caches"); }, "logs: l1 same +0 | 11"},
        {[](auto& s) { s.deselectAll(), s.toggle("whole", "w2"); }, "whole: w1 w2 +0 | 11"},
        {[](auto& s) { s.selectAll("whole"), s.toggle("whole", "w1"); }, atFirst},
        // Of two areas of one rule the first is meant.
        {[](auto& s) { s.deselectAll(), s.selectAll("logs"); }, "logs: l1 same +0 | 11"},
        {[](auto& s) {
             s.deselectAll(), s.setWhollySelected(4, true), s.toggle("forms", "\u00e9");
         },
         "forms: e\u0301 \xff +1 | 110"},
    };
    for (const auto& [choose, expected] : rows) {
        SelectionState state = sample();
        const SelectionState copy = state;
        choose(state);
        EXPECT_EQ(chosen(state), expected);
        EXPECT_EQ(chosen(copy), atFirst) << "a copy has a choice of its own";
    }
}

TEST(SelectionState, AnswersByIdAndByPosition)
{
    SelectionState state = sample();
    EXPECT_TRUE(state.isSelected("logs", "same") && state.isWhollySelected(1));
    EXPECT_FALSE(state.isSelected("review", "same"));
    EXPECT_FALSE(state.isWhollySelected(6)) << "nothing is not all";
    state.toggle("caches", "c3");
    state.toggle("caches", "unknown");
    EXPECT_FALSE(state.isWhollySelected(1));
    EXPECT_EQ(std::pair(state.selectedCount(1), state.selectedBytes(1)), std::pair(2UL, 11L));
    EXPECT_TRUE(state.isSelected("caches", "unknown"));
    state.deselectAll("caches");
    EXPECT_FALSE(state.isSelected("caches", "unknown"));
}

} // namespace CleanCoreTests
