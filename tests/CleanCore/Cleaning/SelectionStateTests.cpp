#include "CleanCore/Cleaning/SelectionState.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using namespace CleanCore;
using testing::ElementsAre;
using testing::IsEmpty;

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

std::vector<CategoryResult> sampleResults()
{
    return {
        category("review", RuleTier::reviewRequired, RuleKind::fileSystem, {"/r1", "/shared"}),
        category("caches", RuleTier::safe, RuleKind::fileSystem, {"/c1", "/c2", "/c3"}),
        category("tool", RuleTier::safe, RuleKind::command, {"label 1", "label 2"}),
        category("logs", RuleTier::safe, RuleKind::fileSystem, {"/l1", "/shared"}),
        category("empty", RuleTier::safe, RuleKind::fileSystem, {}),
    };
}

/// "rule: item item", one text per rule, as selections() gives them.
std::vector<std::string> chosen(const SelectionState& state)
{
    std::vector<std::string> texts;
    for (const CleaningSelection& selection : state.selections()) {
        std::string text = selection.rule.id + ":";
        for (const ScannedItem& item : selection.items) {
            text += " " + item.path;
        }
        texts.push_back(text);
    }
    return texts;
}

const std::vector<std::string> defaultChoice = {"caches: /c1 /c2 /c3", "logs: /l1 /shared"};

} // namespace

TEST(SelectionState, StartsWithSafeFileSystemRulesAndSelectsThemAgain)
{
    SelectionState state(sampleResults());
    EXPECT_EQ(chosen(state), defaultChoice);
    EXPECT_TRUE(state.isSelected("logs", "/shared"));
    EXPECT_FALSE(state.isSelected("review", "/shared")) << "the same path under another rule";
    const SelectionState copy = state;
    state.toggle("caches", "/c2");
    EXPECT_THAT(chosen(state), ElementsAre("caches: /c1 /c3", "logs: /l1 /shared"));
    EXPECT_EQ(state.selectedBytes(), 101 + 11);
    EXPECT_EQ(chosen(copy), defaultChoice) << "a copy has a choice of its own";
    state.toggle("caches", "/c2");
    EXPECT_EQ(chosen(state), defaultChoice);
    state.deselectAll();
    EXPECT_THAT(chosen(state), IsEmpty());
    EXPECT_EQ(state.results().size(), 5U);
    state.toggle("review", "/r1");
    state.selectAll();
    EXPECT_THAT(chosen(state), ElementsAre("review: /r1", defaultChoice[0], defaultChoice[1]));
}

TEST(SelectionState, SelectsAndDeselectsOneRuleOfAnyTierAndKind)
{
    for (const auto& [id, text] :
         {std::pair("review", "review: /r1 /shared"), std::pair("tool", "tool: label 1 label 2")}) {
        SelectionState state(sampleResults());
        state.selectAll(id);
        EXPECT_THAT(chosen(state), testing::Contains(text));
        EXPECT_EQ(chosen(state).size(), 3U);
        state.deselectAll(id);
        EXPECT_EQ(chosen(state), defaultChoice);
    }
    SelectionState state(sampleResults());
    state.selectAll("no such rule");
    state.deselectAll("no such rule");
    EXPECT_EQ(chosen(state), defaultChoice);
}

TEST(SelectionState, TogglesAnAreaThatIsClearedAsAWholeTogether)
{
    std::vector<CategoryResult> results = sampleResults();
    results[2].isClearedAsWhole = true;
    SelectionState state(results);
    state.toggle("tool", "label 2");
    EXPECT_THAT(chosen(state),
                ElementsAre(defaultChoice[0], "tool: label 1 label 2", defaultChoice[1]));
    state.toggle("tool", "label 1");
    EXPECT_EQ(chosen(state), defaultChoice);
    state.toggle("caches", "/c2");
    EXPECT_EQ(state.selections().front().itemsLeftOut, 1U);
}

TEST(SelectionState, KeepsAnUnknownItemWithoutCountingIt)
{
    SelectionState state(sampleResults());
    state.toggle("caches", "/unknown");
    EXPECT_TRUE(state.isSelected("caches", "/unknown"));
    EXPECT_EQ(chosen(state), defaultChoice);
    EXPECT_EQ(state.selectedBytes(), 122);
    state.deselectAll("caches");
    EXPECT_FALSE(state.isSelected("caches", "/unknown"));
    EXPECT_THAT(chosen(state), ElementsAre(defaultChoice[1]));
}

TEST(SelectionState, TellsNamesApartThatDifferOnlyInTheirUnicodeForm)
{
    const std::string composed = "/caf\u00e9";
    const std::string decomposed = "/cafe\u0301";
    SelectionState state({category("area", RuleTier::safe, RuleKind::fileSystem,
                                   {composed, decomposed, "/not \xff utf-8", ""})});
    state.toggle("area", composed);
    state.toggle("area", "");
    EXPECT_THAT(chosen(state), ElementsAre("area: " + decomposed + " /not \xff utf-8"));
}

TEST(SelectionState, TakesTheFirstOfTwoCategoriesOfOneRule)
{
    SelectionState state(
        {category("twin", RuleTier::reviewRequired, RuleKind::fileSystem, {"/1"}),
         category("twin", RuleTier::reviewRequired, RuleKind::fileSystem, {"/2"})});
    state.selectAll("twin");
    EXPECT_THAT(chosen(state), ElementsAre("twin: /1"));
}

} // namespace CleanCoreTests
