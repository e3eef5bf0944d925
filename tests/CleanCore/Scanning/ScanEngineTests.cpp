#include "CleanCore/Scanning/ScanEngine.h"

#include "CleanCore/Scanning/Scan.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedDisk.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <latch>

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

struct ScanEngineTest : testing::Test
{
    std::shared_ptr<ScriptedDisk> disk = std::make_shared<ScriptedDisk>();
    std::shared_ptr<TaskPool> pool = std::make_shared<TaskPool>(2);
    std::vector<CategoryResult> results;

    EventStream<ScanEvent> scan(const std::vector<CleaningRule>& rules, Timestamp now = {})
    {
        return ScanEngine("/home/me", disk, pool).scan(rules, now);
    }
    /// "started a", "completed a", "finished"; what came, in its order.
    Strings readAll(EventStream<ScanEvent> stream)
    {
        Strings lines;
        results.clear();
        while (const auto event = stream.next()) {
            if (const auto* started = std::get_if<RuleStarted>(&*event)) {
                lines.push_back("started " + started->ruleId);
            } else if (const auto* completed = std::get_if<RuleCompleted>(&*event)) {
                lines.push_back("completed " + completed->result.rule.id);
                results.push_back(completed->result);
            } else {
                lines.emplace_back("finished");
                EXPECT_TRUE(std::ranges::equal(
                    std::get<Finished>(*event).results, results, [](const auto& a, const auto& b) {
                        return a.rule.id == b.rule.id && a.items == b.items;
                    }));
            }
        }
        return lines;
    }
};

TEST_F(ScanEngineTest, CompletesEveryRuleOnceAndThenFinishesInCompletionOrder)
{
    std::vector<CleaningRule> rules = {ruleFor("tool", {"/x"}, RuleKind::command)};
    EXPECT_EQ(readAll(scan(rules)), Strings{"finished"});
    for (int i = 0; i < 40; ++i) {
        const std::string id = std::to_string(i);
        rules.push_back(ruleFor(id, {"/shared", "/" + id}));
        disk->add("/" + id, "own", i);
    }
    disk->add("/shared", "entry", 1000);
    auto cancelled = scan(rules);
    auto stream = scan(rules);
    cancelled.cancel();
    const Strings lines = readAll(std::move(stream));
    EXPECT_EQ(lines.back(), "finished");
    EXPECT_EQ(lines.size(), 2U * 40 + 1);
    for (std::size_t i = 0; i < 40; ++i) {
        const CategoryResult& result = results.at(i);
        EXPECT_EQ(result.totalBytes(), 1000 + std::stoi(result.rule.id));
        const auto started = std::ranges::find(lines, "started " + result.rule.id);
        EXPECT_EQ(std::count(started, lines.end(), "completed " + result.rule.id), 1);
    }
}

TEST_F(ScanEngineTest, FindsTheItemsOfEachBaseInTurnAndFlagsWhatItCannotList)
{
    disk->folders["/sealed"] = {{}, EACCES};
    disk->folders["/no-descriptor"] = {{}, EMFILE};
    disk->add("/home/me/first", "small", 1);
    disk->add("/home/me/first", "large", 5);
    disk->add("/open", "new", 200, Timestamp(std::chrono::seconds(1)));
    disk->add("/open", "spared", 300);
    disk->add("/open", "old", 100);
    const std::pair<Strings, const char*> rows[] = {
        {{"~/first", "/open", "~/first"},
         " /home/me/first/large /home/me/first/small /open/old"
         " /home/me/first/large /home/me/first/small"},
        {{"/missing", "/sealed"}, "!"},
        {{"/sealed", "/open"}, "! /open/old"},
        {{"/sealed/*", "/open"}, " /open/old"},
        {{"/no-descriptor/*", "/open"}, "! /open/old"},
    };
    for (const auto& [bases, items] : rows) {
        CleaningRule rule = ruleFor("rule", bases);
        rule.minAgeDays = 1;
        rule.exclusions = {"spared"};
        readAll(scan({rule}, Timestamp(std::chrono::days(1))));
        std::string found = results.at(0).hadAccessErrors ? "!" : "";
        for (const ScannedItem& item : results[0].items) {
            found += ' ' + item.path;
        }
        EXPECT_EQ(found, items);
    }
}

TEST_F(ScanEngineTest, OfAPartFindsTheSameAsOfAllAsksToolsLastAndHasNoResultsOnceStopped)
{
    disk->add("/home/me/outer", "cut", 100);
    disk->add("/home/me/outer", "kept", 5);
    disk->add("/home/me/outer/cut", "inner", 99);
    disk->links = {{"/home/me/link", "/home/me/outer/in"}};
    pool = std::make_shared<TaskPool>(1);
    const std::vector catalog = {
        ruleFor("outer", {"~/outer"}),     ruleFor("tool", {"~/outer"}, RuleKind::command),
        ruleFor("inner", {"~/outer/cut"}), ruleFor("same", {"~/outer/"}),
        ruleFor("linked", {"~/link"}),     ruleFor("beside", {"~/outer2"}),
        ruleFor("above", {"~"}),           ruleFor("other-tool", {"~/outer"}, RuleKind::command)};
    const std::string files = "inner same linked outer 105 ";
    const std::pair<std::string, std::string> rows[] = {{"never", files + "files tools-2 "},
                                                        {"inner", "inner "},
                                                        {"105", files},
                                                        {"files", files + "files tools-2 "},
                                                        {"tools-2", files + "files tools-2 "}};
    for (const auto& [stopAt, expected] : rows) {
        std::stop_source stop;
        std::string log;
        const auto step = [&](const std::string& name) {
            log += name + ' ';
            if (name == stopAt) {
                stop.request_stop();
            }
        };
        const Scan scan("/home/me", disk, pool, [&](auto rules, const std::stop_token&) {
            step("tools-" + std::to_string(rules.size()));
            return std::vector{CategoryResult{rules[1], {{"label", 7}}}};
        });
        const auto found = scan.run({catalog.data(), 2}, catalog, Timestamp(),
                                    {[&](const std::string& ruleId) { step(ruleId); },
                                     [&](std::int64_t bytes) { step(std::to_string(bytes)); },
                                     [&] { step("files"); }},
                                    stop.get_token());
        EXPECT_THAT(log, testing::StartsWith(expected)) << stopAt;
        ASSERT_EQ(found.has_value(), stopAt == "never") << stopAt;
        std::string items;
        for (const CategoryResult& result : found.value_or(std::vector<CategoryResult>())) {
            items += result.rule.id + ':' + result.items.at(0).path + ' ';
        }
        EXPECT_EQ(items, found ? "tool:label outer:/home/me/outer/kept " : "");
    }
}

TEST_F(ScanEngineTest, IsCancelledInsideABaseByDroppingOrCancellingTheStream)
{
    for (const bool isDropped : {false, true}) {
        std::latch isMeasuring(1);
        std::latch wasStopped(1);
        disk->onMeasure = [&](const std::string&, const std::stop_token& stop) {
            const std::stop_callback onStop(stop, [&] { wasStopped.count_down(); });
            isMeasuring.count_down();
            wasStopped.wait();
        };
        disk->add("/hangs", "entry", 1);
        pool = std::make_shared<TaskPool>(1);
        std::optional<EventStream<ScanEvent>> stream =
            scan({ruleFor("hangs", {"/hangs", "/never"}), ruleFor("later", {"/x"})});
        isMeasuring.wait();
        isDropped ? stream.reset() : stream->cancel();
        // The worker comes back because it was asked to stop.
        std::latch isFree(1);
        pool->submit([&] { isFree.count_down(); });
        isFree.wait();
        EXPECT_FALSE(stream && stream->next());
    }
}

} // namespace
} // namespace CleanCoreTests
