#include "CleanCore/Scanning/Scan.h"

#include "CleanCore/Scanning/ItemEnumerator.h"
#include "CleanCore/Scanning/Overlaps.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <gmock/gmock.h>
#include <latch>
#include <regex>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;
using Strings = std::vector<std::string>;

CleaningRule ruleFor(const std::string& id, const Strings& bases,
                     RuleKind kind = RuleKind::fileSystem)
{
    CleaningRule rule;
    rule.id = id;
    rule.kind = kind;
    rule.basePaths = bases;
    return rule;
}

struct ScanTest : testing::Test
{
    const std::shared_ptr<ScriptedDisk> disk = std::make_shared<ScriptedDisk>();
};

TEST_F(ScanTest, FindsTheItemsOfEachBaseInTurnAndFlagsWhatItCannotList)
{
    disk->folders["/sealed"] = {{}, EACCES};
    disk->folders["/no-descriptor"] = {{}, EMFILE};
    disk->add("/open", "new", 200, Timestamp(std::chrono::seconds(1)));
    for (const char* const name :
         {"spared", "Spared", "*", "caf\u00E9", "the\u0301", "\xFF", "old"}) {
        disk->add("/open", name, name == std::string("old") ? 100 : 1);
    }
    disk->add("/home/me/base", "item", 5);
    const Scan scan("/home/me", disk, std::make_shared<TaskPool>(2));
    const std::pair<Strings, const char*> rows[] = {
        {{"~/base", "/open"}, " /home/me/base/item /open/old /open/Spared /open/\xFF"},
        {{"/missing", "/sealed"}, "!"},
        {{"/sealed", "~/base"}, "! /home/me/base/item"},
        {{"/sealed/*", "~/base"}, " /home/me/base/item"},
        {{"/no-descriptor/*", "~/base"}, "! /home/me/base/item"},
    };
    for (const auto& [bases, items] : rows) {
        std::vector rules = {ruleFor("rule", bases), ruleFor("empty", {"/missing"})};
        rules[0].minAgeDays = 1;
        rules[0].exclusions = {"spared", "cafe\u0301", "th\u00E9", "*", "\xFE", ""};
        const auto results = scan.run(rules, rules, Timestamp(std::chrono::days(1)), {}, {});
        ASSERT_EQ(results->size(), 1U) << items;
        std::string found = results->at(0).hadAccessErrors ? "!" : "";
        for (const ScannedItem& item : results->at(0).items) {
            found += ' ' + item.path;
        }
        EXPECT_EQ(found, items);
    }
}

TEST_F(ScanTest, KeepsEntriesWhoseNewestChangeIsOldEnough)
{
    using namespace std::chrono_literals;
    constexpr std::chrono::hours day(24);
    const Timestamp now = Timestamp(1'772'366'400s + 123'456'789ns);
    const std::tuple<std::int64_t, Timestamp, bool> rows[] = {
        {7, now - 7 * day, true},
        {7, now - 7 * day + 1ns, false},
        // The cutoff still fits, though its distance from now does not.
        {115'740, now - 57'870 * day - 57'870 * day, true},
        {115'740, now - 57'870 * day - 57'870 * day + 1ns, false},
        {INT64_MAX, distantPast + 1ns, false},
        {INT64_MIN, Timestamp::max(), true},
    };
    for (const auto& [minAgeDays, newestChange, isItem] : rows) {
        disk->folders.clear();
        disk->add("/base", "entry", 10, newestChange);
        EXPECT_EQ(ItemEnumerator(disk).items("/base", minAgeDays, {}, now).size(), isItem ? 1 : 0)
            << minAgeDays << " days, changed " << (newestChange - now).count() << " ns from now";
    }
}

TEST_F(ScanTest, OfAPartFindsTheSameAsOfAllAsksToolsLastAndHasNoResultsOnceStopped)
{
    disk->add("/home/me/outer", "cut", 100);
    disk->add("/home/me/outer", "kept", 5);
    disk->add("/home/me/outer/cut", "inner", 99);
    disk->links = {{"/home/me/link", "/home/me/outer/in"}};
    const std::vector catalog = {
        ruleFor("outer", {"~/outer"}),     ruleFor("tool", {"~/outer"}, RuleKind::command),
        ruleFor("inner", {"~/outer/cut"}), ruleFor("same", {"~/outer/"}),
        ruleFor("linked", {"~/link"}),     ruleFor("beside", {"~/outer2"}),
        ruleFor("above", {"~"}),           ruleFor("other-tool", {"~/outer"}, RuleKind::command)};
    const std::string files = "inner same linked outer 105 ";
    for (const auto& [stopped, expected] : {std::pair("never", files + "files tools-2 "),
                                            {"inner", "inner "},
                                            {"105", files},
                                            {"tools-2", files + "files tools-2 "}}) {
        const std::string stopAt = stopped;
        std::stop_source stop;
        std::string log;
        const auto step = [&](const std::string& name) {
            log += name + ' ';
            if (name == stopAt) {
                stop.request_stop();
            }
        };
        const Scan scan("/home/me", disk, std::make_shared<TaskPool>(1),
                        [&](auto rules, const std::stop_token&) {
                            step("tools-" + std::to_string(rules.size()));
                            return std::vector{CategoryResult{rules[1], {{"label", 7}}}};
                        });
        const auto found = scan.run({catalog.data(), 2}, catalog, Timestamp(),
                                    {[&](const std::string& ruleId) { step(ruleId); },
                                     [&](std::int64_t bytes) { step(std::to_string(bytes)); },
                                     [&] { step("files"); }},
                                    stop.get_token());
        EXPECT_THAT(log, testing::StartsWith(expected)) << stopAt;
        EXPECT_EQ(log.find("tools") < log.size(), expected.find("tools") < expected.size());
        std::string items;
        for (const CategoryResult& result : found.value_or(std::vector<CategoryResult>())) {
            items += result.rule.id + ':' + result.items.at(0).path + ' ';
        }
        EXPECT_EQ(items, stopAt == "never" ? "tool:label outer:/home/me/outer/kept " : "");
    }
}

TEST_F(ScanTest, IsStoppedInsideABase)
{
    disk->add("/base", "entry", 1);
    disk->add("/never", "entry", 1);
    std::stop_source stop;
    Strings measured;
    disk->onMeasure = [&](const std::string& folder, const std::stop_token& token) {
        measured.push_back(folder);
        EXPECT_TRUE(token.stop_possible());
        std::latch stopped(1);
        const std::stop_callback whenStopped(token, [&] { stopped.count_down(); });
        stop.request_stop();
        stopped.wait();
    };
    const std::vector rules = {ruleFor("rule", {"/base", "/never"}), ruleFor("later", {"/never"})};
    const Scan scan("/home/me", disk, std::make_shared<TaskPool>(1));
    EXPECT_FALSE(scan.run(rules, rules, {}, {}, stop.get_token()));
    EXPECT_EQ(measured, Strings{"/base"});
}

TEST_F(ScanTest, OffersOverlapsOnce)
{
    disk->links = {{"/link", "/base"}, {"/link/item", "/base/item"}, {"/to/deep", "/base/item"}};
    // Areas with their items; "!" marks an area that requires review, "$" one of a tool, "-" an
    // item that is offered elsewhere, ">" one that an area leaves to those that look inside.
    for (const std::string row : {
             "a: /base/1 /base/2 -/base/1 -/base/2 ",
             "b: -/base/1 /base/2 a: /base/1 ",
             "a: -/base/1 b!: /base/1 ",
             "a: /base/1 /base/2 b: -/link/1 /link/3 ",
             "a: >/link/item b: /to/deep/x ",
             "a: >/base/item b: >/base/item/x c: /base/item/x/deep/y ",
             "a: >/base/item /base/item! /base/item.x b: /base/item/x ",
             "a: /base/1 b$: /base/1 x ",
         }) {
        std::vector<CategoryResult> found;
        for (const std::string& word : words(row)) {
            if (word.ends_with(':')) {
                CleaningRule& rule = found.emplace_back().rule;
                rule.id = word;
                rule.tier = word.ends_with("!:") ? RuleTier::reviewRequired : RuleTier::safe;
                rule.kind = word.ends_with("$:") ? RuleKind::command : RuleKind::fileSystem;
            } else {
                found.back().items.push_back({word.substr(word.find('/') == 1 ? 1 : 0), 1});
            }
        }
        std::string kept;
        for (const CategoryResult& result : withoutOverlaps(found, *disk)) {
            kept += result.rule.id + ' ';
            for (const ReachedEntry& entry : result.reachedEntries) {
                kept += '>' + entry.path + ' ';
                EXPECT_GT(entry.ruleId, result.rule.id);
            }
            for (const ScannedItem& item : result.items) {
                kept += item.path + ' ';
            }
        }
        EXPECT_EQ(kept, std::regex_replace(row, std::regex("-\\S+ "), ""));
    }
}

} // namespace
} // namespace CleanCoreTests
