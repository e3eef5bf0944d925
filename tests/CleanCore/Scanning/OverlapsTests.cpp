#include "CleanCore/Scanning/Overlaps.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

TEST(Overlaps, AreOfferedOnce)
{
    ScriptedDisk files;
    files.links = {{"/link", "/base"}, {"/link/item", "/base/item"}, {"/to/deep", "/base/item"}};
    // Areas with their items; "!" marks an area that requires review, "$" one of a tool, and "-" an
    // item that is offered elsewhere, ">" one that an area leaves to those that look inside.
    const char* const rows[] = {
        "a:/base/1 /base/2 -/base/1 -/base/2",
        "b:-/base/1 /base/2 a:/base/1",
        "a:-/base/1 b!:/base/1",
        "a:/base/1 /base/2 b:-/link/1 /link/3",
        "a:>/base/item /base/item-2 b:/base/item/x /base/item/y",
        "a:>/link/item b:/to/deep/x",
        "a:>/base/item b:>/base/item/x c:/base/item/x/deep/y",
        "a:>/base/item /base/item! /base/item.x b:/base/item/x",
        "a:/base/1 b$:/base/1 x",
    };
    for (const char* const row : rows) {
        std::vector<CategoryResult> found;
        std::vector<CategoryResult> offered;
        std::string reached;
        for (std::string word : words(row)) {
            if (const auto colon = word.find(':'); colon != std::string::npos) {
                CleaningRule rule;
                rule.id = word.substr(0, colon);
                rule.tier = rule.id.ends_with('!') ? RuleTier::reviewRequired : RuleTier::safe;
                rule.kind = rule.id.ends_with('$') ? RuleKind::command : RuleKind::fileSystem;
                found.push_back({rule, {}});
                offered.push_back({rule, {}});
                word.erase(0, colon + 1);
            }
            const bool isReached = word.starts_with('>');
            const bool isLeftOut = word.starts_with('-') || isReached;
            found.back().items.push_back({word.substr(isLeftOut ? 1 : 0), 1});
            if (isReached) {
                reached += found.back().items.back().path + ' ';
            } else if (!isLeftOut) {
                offered.back().items.push_back({word, 1});
            }
        }
        std::string told;
        const auto kept = withoutOverlaps(found, files);
        ASSERT_EQ(kept.size(), offered.size());
        for (std::size_t i = 0; i < kept.size(); ++i) {
            EXPECT_EQ(kept[i].items, offered[i].items) << row;
            for (const ReachedEntry& entry : kept[i].reachedEntries) {
                EXPECT_GT(entry.ruleId, kept[i].rule.id) << row;
                told += entry.path + ' ';
            }
        }
        EXPECT_EQ(told, reached) << row;
    }
}

} // namespace
} // namespace CleanCoreTests
