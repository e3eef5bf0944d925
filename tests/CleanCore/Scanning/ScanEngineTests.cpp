#include "CleanCore/Scanning/ScanEngine.h"

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedFileManager.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <latch>

namespace {

using namespace CleanCore;
using CleanCoreTests::ScriptedFileManager;
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

/// "started a", "completed a", "finished"; what came, in its order.
struct Log
{
    Strings lines;
    std::vector<CategoryResult> completed;
    std::vector<CategoryResult> finished;

    void operator()(const RuleStarted& event) { lines.push_back("started " + event.ruleId); }
    void operator()(const RuleCompleted& event)
    {
        lines.push_back("completed " + event.result.rule.id);
        completed.push_back(event.result);
    }
    void operator()(const Finished& event)
    {
        lines.emplace_back("finished");
        finished = event.results;
    }
    [[nodiscard]] std::ptrdiff_t at(const std::string& line) const
    {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;
        return std::find(lines.begin(), lines.end(), line) - lines.begin();
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

Strings idsOf(const std::vector<CategoryResult>& results)
{
    Strings ids;
    for (const CategoryResult& result : results) {
        ids.push_back(result.rule.id);
    }
    return ids;
}

struct ScanEngineTest : testing::Test
{
    std::shared_ptr<ScriptedFileManager> files = std::make_shared<ScriptedFileManager>();
    std::shared_ptr<TaskPool> pool = std::make_shared<TaskPool>(2);

    EventStream<ScanEvent> scan(const std::vector<CleaningRule>& rules)
    {
        return ScanEngine("/home/me", files, pool).scan(rules, Timestamp());
    }
    Log logOf(const std::vector<CleaningRule>& rules)
    {
        auto stream = scan(rules);
        return readAll(stream);
    }
    void addFile(const std::string& base, const std::string& name, std::int64_t size)
    {
        files->folders[base].names.push_back(name);
        files->measures[base + '/' + name] = {size, Timestamp(), std::nullopt};
    }
};

TEST_F(ScanEngineTest, FinishesAtOnceWithoutFileSystemRules)
{
    EXPECT_EQ(logOf({}).lines, Strings{"finished"});
    EXPECT_EQ(logOf({ruleFor("tool", {"/base"}, RuleKind::command)}).lines, Strings{"finished"});
}

TEST_F(ScanEngineTest, CompletesEveryRuleOnceAndThenFinishesInCompletionOrder)
{
    std::vector<CleaningRule> rules = {ruleFor("tool", {"/x"}, RuleKind::command)};
    for (int i = 0; i < 40; ++i) {
        const std::string id = "rule-" + std::to_string(i);
        rules.push_back(ruleFor(id, {"/shared", "/" + id}));
        addFile("/" + id, "own", i);
    }
    rules.push_back(ruleFor("no-bases", {"/missing/*"}));
    addFile("/shared", "entry", 1000);

    const Log log = logOf(rules);

    ASSERT_EQ(log.lines.size(), 2U * 41 + 1);
    EXPECT_EQ(log.lines.back(), "finished");
    EXPECT_EQ(idsOf(log.finished), idsOf(log.completed));
    for (const CategoryResult& result : log.finished) {
        EXPECT_LT(log.at("started " + result.rule.id), log.at("completed " + result.rule.id));
        if (result.rule.id != "no-bases") {
            ASSERT_EQ(result.items.size(), 2U) << result.rule.id;
            EXPECT_EQ(result.totalBytes(), 1000 + std::stoi(result.rule.id.substr(5)));
        } else {
            EXPECT_EQ(result.totalBytes(), 0);
        }
    }
}

TEST_F(ScanEngineTest, KeepsTheItemsOfOneBaseBeforeThoseOfTheNext)
{
    addFile("/home/me/first", "small", 1);
    addFile("/home/me/first", "large", 5);
    addFile("/second", "largest", 100);
    const Log log = logOf({ruleFor("rule", {"~/first", "/second", "~/first"})});
    Strings paths;
    for (const ScannedItem& item : log.finished.at(0).items) {
        paths.push_back(item.path);
    }
    EXPECT_EQ(paths, (Strings{"/home/me/first/large", "/home/me/first/small", "/second/largest",
                              "/home/me/first/large", "/home/me/first/small"}));
}

TEST_F(ScanEngineTest, FlagsOnlyBasesThatExistAndCannotBeListed)
{
    files->folders["/sealed"] = {{}, EACCES};
    files->folders["/no-descriptor"] = {{}, EMFILE};
    addFile("/open", "entry", 3);
    const struct
    {
        Strings bases;
        bool hadAccessErrors;
        std::size_t items;
    } cases[] = {{{"/missing"}, false, 0},
                 {{"/missing", "/sealed"}, true, 0},
                 {{"/sealed", "/open"}, true, 1},
                 {{"/open", "/missing"}, false, 1},
                 {{"/sealed/*", "/open"}, false, 1},
                 {{"/no-descriptor/*", "/open"}, true, 1},
                 {{}, false, 0}};
    for (const auto& [bases, hadAccessErrors, items] : cases) {
        const Log log = logOf({ruleFor("rule", bases)});
        ASSERT_EQ(log.finished.size(), 1U);
        EXPECT_EQ(log.finished[0].hadAccessErrors, hadAccessErrors);
        EXPECT_EQ(log.finished[0].items.size(), items);
    }
}

TEST_F(ScanEngineTest, AppliesTheRulesAgeAndExclusions)
{
    addFile("/base", "old", 1);
    addFile("/base", "new", 2);
    addFile("/base", "spared", 3);
    files->measures["/base/new"].latestModification = Timestamp(std::chrono::seconds(1));
    CleaningRule rule = ruleFor("rule", {"/base"});
    rule.minAgeDays = 1;
    rule.exclusions = {"spared"};
    auto stream = ScanEngine("/home/me", files, pool)
                      .scan(std::vector{rule}, Timestamp(std::chrono::days(1)));
    const Log log = readAll(stream);
    ASSERT_EQ(log.finished.at(0).items.size(), 1U);
    EXPECT_EQ(log.finished[0].items[0].path, "/base/old");
}

TEST_F(ScanEngineTest, IsCancelledByDroppingOrCancellingTheStream)
{
    for (const bool isDropped : {false, true}) {
        std::latch isMeasuring(1);
        std::latch wasStopped(1);
        files->onMeasure = [&](const std::string&, const std::stop_token& stop) {
            const std::stop_callback onStop(stop, [&] { wasStopped.count_down(); });
            isMeasuring.count_down();
            wasStopped.wait();
        };
        addFile("/hangs", "entry", 1);
        auto single = std::make_shared<TaskPool>(1);
        std::optional<EventStream<ScanEvent>> stream =
            ScanEngine("/home/me", files, single)
                .scan(std::vector{ruleFor("hangs", {"/hangs", "/never"}), ruleFor("later", {"/x"})},
                      Timestamp());
        isMeasuring.wait();
        if (isDropped) {
            stream.reset();
        } else {
            stream->cancel();
            EXPECT_TRUE(stream->hasEnded());
            EXPECT_FALSE(stream->next());
        }
        // The worker comes back because it was asked to stop.
        std::latch isFree(1);
        single->submit([&] { isFree.count_down(); });
        isFree.wait();
        if (stream) {
            EXPECT_FALSE(stream->next());
        }
    }
}

TEST_F(ScanEngineTest, RunsScansIndependentlyOfEachOther)
{
    addFile("/base", "entry", 7);
    auto cancelled = scan({ruleFor("a", {"/base"})});
    auto first = scan({ruleFor("b", {"/base"})});
    auto second = scan({ruleFor("c", {"/base"})});
    cancelled.cancel();
    EXPECT_EQ(idsOf(readAll(second).finished), Strings{"c"});
    EXPECT_EQ(readAll(first).finished.at(0).totalBytes(), 7);
}

} // namespace
