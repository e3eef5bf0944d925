#include "CleanCore/Scanning/ResultList.h"

#include "CleanCore/Scanning/Overlaps.h"
#include "tests/Support/ScriptedDisk.h"

#include <gtest/gtest.h>
#include <sstream>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

/// Areas written as "id:path path | id:path …"; an id that ends in "!" requires review, one that
/// ends in "$" is a tool's. All items are of one byte.
std::vector<CategoryResult> areas(const std::string& text)
{
    std::vector<CategoryResult> results;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (word == "|") {
            continue;
        }
        if (const auto colon = word.find(':'); colon != std::string::npos) {
            CategoryResult& result = results.emplace_back();
            result.rule.id = word.substr(0, colon);
            result.rule.tier = word[colon - 1] == '!' ? RuleTier::reviewRequired : RuleTier::safe;
            result.rule.kind = word[colon - 1] == '$' ? RuleKind::command : RuleKind::fileSystem;
            word.erase(0, colon + 1);
        }
        if (!word.empty()) {
            results.back().items.push_back({word, 1});
        }
    }
    return results;
}

std::string text(const std::vector<CategoryResult>& results)
{
    std::string all;
    for (const CategoryResult& result : results) {
        all += (all.empty() ? "" : " | ") + result.rule.id + ':';
        for (const ScannedItem& item : result.items) {
            all += (all.ends_with(':') ? "" : " ") + item.path;
        }
    }
    return all;
}

CategoryResult sized(const std::string& id, const std::vector<std::int64_t>& sizes,
                     bool hadAccessErrors = false)
{
    CategoryResult made;
    made.rule.id = id;
    made.hadAccessErrors = hadAccessErrors;
    for (const std::int64_t size : sizes) {
        made.items.push_back({"/" + id + std::to_string(made.items.size()), size});
    }
    return made;
}

} // namespace

TEST(ResultList, OffersEveryEntryOnce)
{
    ScriptedDisk files;
    files.links = {{"/link", "/base"}, {"/link/item", "/base/item"}, {"/to/deep", "/base/item"}};
    const std::pair<const char*, const char*> rows[] = {
        {"b:/base/item /base/item-2 /base/item.x /base/it | a:/other/item",
         "b:/base/item /base/item-2 /base/item.x /base/it | a:/other/item"},
        {"a:/base/1 /base/2 /base/1 /base/2", "a:/base/1 /base/2"},
        {"b:/base/1 /base/2 | a:/base/1", "b:/base/2 | a:/base/1"},
        {"a:/base/1 | b!:/base/1", "a: | b!:/base/1"},
        {"a:/base/1 /base/2 | b:/link/1 /link/3", "a:/base/1 /base/2 | b:/link/3"},
        {"a:/base/item /base/other | b:/base/item/x /base/item/y",
         "a:/base/other | b:/base/item/x /base/item/y"},
        {"a:/link/item | b:/to/deep/x", "a: | b:/to/deep/x"},
        {"a:/base/item | b:/base/item/x | c:/base/item/x/deep/y",
         "a: | b: | c:/base/item/x/deep/y"},
        {"a:/base/item /base/item! /base/item.x | b:/base/item/x",
         "a:/base/item! /base/item.x | b:/base/item/x"},
        {"a:/base/1 | b$:/base/1 x", "a:/base/1 | b$:/base/1 x"},
        {"", ""},
    };
    for (const auto& [found, offered] : rows) {
        EXPECT_EQ(text(withoutOverlaps(areas(found), files)), offered) << found;
    }
}

TEST(ResultList, OfAPartOfTheAreasNeedsThoseThatReachIntoIt)
{
    ScriptedDisk files;
    files.links = {{"/home/me/link", "/base/in"}};
    const auto rule = [](const std::string& id, const std::string& base,
                         RuleKind kind = RuleKind::fileSystem) {
        CleaningRule made;
        made.id = id;
        made.kind = kind;
        made.basePaths = {base};
        return made;
    };
    const std::vector<CleaningRule> all = {rule("asked", "/base"),
                                           rule("same", "/base/"),
                                           rule("inside", "/base/x/y"),
                                           rule("linked", "~/link"),
                                           rule("beside", "/base2"),
                                           rule("above", "/"),
                                           rule("tool", "/base/tool", RuleKind::command)};
    std::string ids;
    for (const CleaningRule& each :
         rulesReachingInto({all.data(), 1}, all, "/home/me", files, {})) {
        ids += each.id + ' ';
    }
    EXPECT_EQ(ids, "same inside linked ");
    EXPECT_TRUE(rulesReachingInto(all, all, "/home/me", files, {}).empty());
}

TEST(ResultList, LeavesOutWhatIsEmptyAndSortsTheRestByTotal)
{
    std::vector<CategoryResult> list = resultList(
        {sized("empty", {}), sized("tie-1", {3, 4}), sized("unreadable", {}, true),
         sized("zero", {0}), sized("large", {10}), sized("tie-2", {7}), sized("partly", {1}, true),
         sized("tie-3", {5, 1, 1}), sized("beyond-32-bits", {3'000'000'000, 3'000'000'000}),
         sized("beyond-64-bits", {INT64_MAX, 1})});
    EXPECT_EQ(list[5].items.size(), 3U);
    for (CategoryResult& result : list) {
        result.items.clear();
    }
    EXPECT_EQ(text(list), "beyond-64-bits: | beyond-32-bits: | large: | tie-1: | tie-2: | tie-3: | "
                          "partly: | unreadable: | zero:");
}

} // namespace CleanCoreTests
