#include "CleanCore/Scanning/Overlaps.h"

#include "tests/Support/ScriptedFileManager.h"

#include <gtest/gtest.h>

namespace {

using namespace CleanCore;
using Strings = std::vector<std::string>;

struct Area
{
    const char* id;
    Strings paths;
    RuleTier tier = RuleTier::safe;
    RuleKind kind = RuleKind::fileSystem;
};

/// The paths that stay, as "id:path".
Strings kept(const std::vector<Area>& areas)
{
    CleanCoreTests::ScriptedFileManager files;
    files.links = {{"/link", "/base"}, {"/link/item", "/base/item"}, {"/to/deep", "/base/item"}};
    std::vector<CategoryResult> results;
    for (const Area& area : areas) {
        CategoryResult result;
        result.rule.id = area.id;
        result.rule.tier = area.tier;
        result.rule.kind = area.kind;
        result.items.reserve(area.paths.size());
        for (const std::string& path : area.paths) {
            result.items.push_back({path, 1});
        }
        results.push_back(std::move(result));
    }
    Strings paths;
    for (const CategoryResult& result : withoutOverlaps(std::move(results), files)) {
        for (const ScannedItem& item : result.items) {
            paths.push_back(result.rule.id + ':' + item.path);
        }
    }
    return paths;
}

TEST(Overlaps, OfferEveryEntryOnce)
{
    using enum RuleTier;
    const struct
    {
        const char* description;
        std::vector<Area> areas;
        Strings kept;
    } cases[] = {
        {"nothing shared",
         {{"b", {"/base/item", "/base/item-2", "/base/item.x", "/base/it"}},
          {"a", {"/other/item"}}},
         {"b:/base/item", "b:/base/item-2", "b:/base/item.x", "b:/base/it", "a:/other/item"}},
        {"the same base twice in one area",
         {{"a", {"/base/1", "/base/2", "/base/1", "/base/2"}}},
         {"a:/base/1", "a:/base/2"}},
        {"the same base in two areas, whichever was through first",
         {{"b", {"/base/1", "/base/2"}}, {"a", {"/base/1"}}},
         {"b:/base/2", "a:/base/1"}},
        {"review comes before safe",
         {{"a", {"/base/1"}}, {"b", {"/base/1"}, reviewRequired}},
         {"b:/base/1"}},
        {"two paths to one base",
         {{"a", {"/base/1", "/base/2"}}, {"b", {"/link/1", "/link/3"}}},
         {"a:/base/1", "a:/base/2", "b:/link/3"}},
        {"a base inside an item",
         {{"a", {"/base/item", "/base/other"}}, {"b", {"/base/item/x", "/base/item/y"}}},
         {"a:/base/other", "b:/base/item/x", "b:/base/item/y"}},
        {"a base inside an item, through links",
         {{"a", {"/link/item"}}, {"b", {"/to/deep/x"}}},
         {"b:/to/deep/x"}},
        {"an item inside an item inside an item",
         {{"a", {"/base/item"}}, {"b", {"/base/item/x"}}, {"c", {"/base/item/x/deep/y"}}},
         {"c:/base/item/x/deep/y"}},
        {"a base inside an item that sorts among its siblings",
         {{"a", {"/base/item", "/base/item!", "/base/item.x"}}, {"b", {"/base/item/x"}}},
         {"a:/base/item!", "a:/base/item.x", "b:/base/item/x"}},
        {"a tool's items",
         {{"a", {"/base/1"}}, {"b", {"/base/1", "x"}, safe, RuleKind::command}},
         {"a:/base/1", "b:/base/1", "b:x"}},
        {"nothing", {}, {}},
    };
    for (const auto& [description, areas, expected] : cases) {
        EXPECT_EQ(kept(areas), expected) << description;
    }
}

} // namespace
