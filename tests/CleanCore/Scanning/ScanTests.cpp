#include "CleanCore/Scanning/Scan.h"

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/ScriptedDisk.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

CleaningRule ruleFor(const std::string& id, const std::string& base,
                     RuleKind kind = RuleKind::fileSystem)
{
    CleaningRule rule;
    rule.id = id;
    rule.kind = kind;
    rule.basePaths = {base};
    return rule;
}

/// A scan of two of three areas that logs its steps, and stops itself at one of them.
struct LoggedScan
{
    std::string log;
    std::string found;

    explicit LoggedScan(const std::string& stopAt = "never")
    {
        std::stop_source stop;
        const auto step = [&](const std::string& name) {
            log += name + ' ';
            if (name == stopAt) {
                stop.request_stop();
            }
        };
        const auto disk = std::make_shared<ScriptedDisk>();
        disk->add("/home/me/outer", "cut", 100);
        disk->add("/home/me/outer", "kept", 5);
        disk->add("/home/me/outer/cut", "inner", 99);
        const Scan scan("/home/me", disk, std::make_shared<TaskPool>(1),
                        [&](auto rules, const std::stop_token&) {
                            step("tools-" + std::to_string(rules.size()));
                            return std::vector{CategoryResult{rules[1], {{"label", 7}}}};
                        });
        const std::vector catalog = {ruleFor("outer", "~/outer"),
                                     ruleFor("tool", "", RuleKind::command),
                                     ruleFor("inner", "~/outer/cut")};
        const Scan::Progress progress{
            [&](const std::string& ruleId) { step(ruleId); },
            [&](std::int64_t bytes) { step(std::to_string(bytes)); },
            [&] { step("files"); },
        };
        const auto results =
            scan.run({catalog.data(), 2}, catalog, Timestamp(), progress, stop.get_token());
        for (const CategoryResult& result : results.value_or(std::vector<CategoryResult>())) {
            found += result.rule.id + ':' + result.items.at(0).path + ' ';
        }
    }
};

} // namespace

TEST(Scan, OfAPartFindsTheSameAsAScanOfAllAndAsksToolsLast)
{
    const LoggedScan scan;
    EXPECT_EQ(scan.log, "inner outer 105 files tools-2 ");
    EXPECT_EQ(scan.found, "tool:label outer:/home/me/outer/kept ");
}

TEST(Scan, HasNoResultsOnceStopped)
{
    for (const char* step : {"inner", "105", "files", "tools-2"}) {
        const LoggedScan scan(step);
        EXPECT_EQ(scan.found, "") << step;
        EXPECT_THAT(scan.log, testing::HasSubstr(step));
        EXPECT_EQ(scan.log.find("tools") != std::string::npos,
                  std::string_view("files tools-2").find(step) != std::string_view::npos)
            << step;
    }
}

} // namespace CleanCoreTests
