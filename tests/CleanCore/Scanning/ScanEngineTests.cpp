#include "CleanCore/Scanning/ScanEngine.h"

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedDisk.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <latch>

namespace CleanCoreTests {

using namespace CleanCore;
using Strings = std::vector<std::string>;

namespace {

CleaningRule ruleFor(const std::string& id, const Strings& bases,
                     RuleKind kind = RuleKind::fileSystem)
{
    CleaningRule rule;
    rule.id = id;
    rule.kind = kind;
    rule.basePaths = bases;
    return rule;
}

/// "started a", "completed a", "finished"; what came, in its order.
struct Log
{
    Strings lines;
    std::vector<CategoryResult> results;

    void operator()(const RuleStarted& event) { lines.push_back("started " + event.ruleId); }
    void operator()(const RuleCompleted& event)
    {
        lines.push_back("completed " + event.result.rule.id);
        results.push_back(event.result);
    }
    void operator()(const Finished& event)
    {
        lines.emplace_back("finished");
        EXPECT_TRUE(std::equal(event.results.begin(), event.results.end(), results.begin(),
                               results.end(), [](const auto& a, const auto& b) {
                                   return a.rule.id == b.rule.id && a.items == b.items;
                               }));
    }
};

Log readAll(EventStream<ScanEvent>& stream)
{
    Log log;
    while (auto event = stream.next()) {
        std::visit(log, *event);
    }
    return log;
}

struct ScanEngineTest : testing::Test
{
    std::shared_ptr<ScriptedDisk> disk = std::make_shared<ScriptedDisk>();
    std::shared_ptr<TaskPool> pool = std::make_shared<TaskPool>(2);

    EventStream<ScanEvent> scan(const std::vector<CleaningRule>& rules, Timestamp now = {})
    {
        return ScanEngine("/home/me", disk, pool).scan(rules, now);
    }
    /// The items of one rule, "!" for access errors before them.
    std::string found(const CleaningRule& rule, Timestamp now = {})
    {
        auto stream = scan({rule}, now);
        const Log log = readAll(stream);
        std::string text = log.results.at(0).hadAccessErrors ? "!" : "";
        for (const ScannedItem& item : log.results[0].items) {
            text += ' ' + item.path;
        }
        return text;
    }
};

} // namespace

TEST_F(ScanEngineTest, CompletesEveryRuleOnceAndThenFinishesInCompletionOrder)
{
    std::vector<CleaningRule> rules = {ruleFor("tool", {"/x"}, RuleKind::command)};
    auto none = scan(rules);
    EXPECT_EQ(readAll(none).lines, Strings{"finished"});
    for (int i = 0; i < 40; ++i) {
        const std::string id = std::to_string(i);
        rules.push_back(ruleFor(id, {"/shared", "/" + id}));
        disk->add("/" + id, "own", i);
    }
    disk->add("/shared", "entry", 1000);
    auto cancelled = scan(rules);
    auto other = scan({rules[1]});
    auto stream = scan(rules);
    cancelled.cancel();
    const Log log = readAll(stream);
    EXPECT_EQ(log.lines.back(), "finished");
    EXPECT_EQ(log.lines.size(), 2U * 40 + 1);
    for (int i = 0; i < 40; ++i) {
        const auto& result = log.results.at(static_cast<std::size_t>(i));
        EXPECT_EQ(result.totalBytes(), 1000 + std::stoi(result.rule.id));
        const auto at = [&](const std::string& event) {
            return std::find(log.lines.begin(), log.lines.end(), event + result.rule.id);
        };
        EXPECT_LT(at("started "), at("completed "));
        EXPECT_NE(at("completed "), log.lines.end());
    }
    EXPECT_EQ(readAll(other).lines, (Strings{"started 0", "completed 0", "finished"}));
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
        {{"/missing"}, ""},
        {{"/missing", "/sealed"}, "!"},
        {{"/sealed", "/open"}, "! /open/old"},
        {{"/open", "/missing"}, " /open/old"},
        {{"/sealed/*", "/open"}, " /open/old"},
        {{"/no-descriptor/*", "/open"}, "! /open/old"},
        {{}, ""},
    };
    for (const auto& [bases, items] : rows) {
        CleaningRule rule = ruleFor("rule", bases);
        rule.minAgeDays = 1;
        rule.exclusions = {"spared"};
        EXPECT_EQ(found(rule, Timestamp(std::chrono::days(1))), items);
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
        if (isDropped) {
            stream.reset();
        } else {
            stream->cancel();
        }
        // The worker comes back because it was asked to stop.
        std::latch isFree(1);
        pool->submit([&] { isFree.count_down(); });
        isFree.wait();
        EXPECT_FALSE(stream && stream->next());
    }
}

} // namespace CleanCoreTests
