#include "CleanCore/Scanning/ResultList.h"

#include "CleanCore/Scanning/Overlaps.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

/// Areas written as "id:path path id:path …"; an id that ends in "!" requires review, one that
/// ends in "$" is a tool's. All items are of one byte.
std::vector<CategoryResult> areas(const std::string& text)
{
    std::vector<CategoryResult> results;
    for (std::string word : words(text)) {
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

TEST(ResultList, OffersEveryEntryOnce)
{
    ScriptedDisk files;
    files.links = {{"/link", "/base"}, {"/link/item", "/base/item"}, {"/to/deep", "/base/item"}};
    const std::pair<const char*, const char*> rows[] = {
        {"a:/base/1 /base/2 /base/1 /base/2", "a:/base/1 /base/2"},
        {"b:/base/1 /base/2 a:/base/1", "b:/base/2 | a:/base/1"},
        {"a:/base/1 b!:/base/1", "a: | b!:/base/1"},
        {"a:/base/1 /base/2 b:/link/1 /link/3", "a:/base/1 /base/2 | b:/link/3"},
        {"a:/base/item /base/item-2 b:/base/item/x /base/item/y",
         "a:/base/item-2 | b:/base/item/x /base/item/y"},
        {"a:/link/item b:/to/deep/x", "a: | b:/to/deep/x"},
        {"a:/base/item b:/base/item/x c:/base/item/x/deep/y", "a: | b: | c:/base/item/x/deep/y"},
        {"a:/base/item /base/item! /base/item.x b:/base/item/x",
         "a:/base/item! /base/item.x | b:/base/item/x"},
        {"a:/base/1 b$:/base/1 x", "a:/base/1 | b$:/base/1 x"},
    };
    for (const auto& [found, offered] : rows) {
        EXPECT_EQ(text(withoutOverlaps(areas(found), files)), offered) << found;
    }
}

TEST(ResultList, LeavesOutWhatIsEmptyAndSortsTheRestByTotal)
{
    std::vector<CategoryResult> found =
        areas("empty: tie-1:3 4 unreadable: zero:0 large:10 tie-2:7 partly:1 tie-3:5 1 1 "
              "beyond-32-bits:3000000000 3000000000 beyond-64-bits:9223372036854775807 1");
    for (CategoryResult& result : found) {
        result.hadAccessErrors = result.rule.id == "unreadable" || result.rule.id == "partly";
        for (ScannedItem& item : result.items) {
            item.sizeBytes = std::stoll(item.path);
        }
    }
    EXPECT_EQ(text(resultList(found)),
              "beyond-64-bits:9223372036854775807 1 | beyond-32-bits:3000000000 3000000000 | "
              "large:10 | tie-1:3 4 | tie-2:7 | tie-3:5 1 1 | partly:1 | unreadable: | zero:0");
}

} // namespace
} // namespace CleanCoreTests
