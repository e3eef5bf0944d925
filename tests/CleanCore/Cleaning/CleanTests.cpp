#include "CleanCore/Cleaning/Clean.h"

#include "tests/Support/ScriptedDisk.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

CleaningSelection selection(RuleKind kind, const std::string& path)
{
    CleaningSelection made;
    made.rule.kind = kind;
    made.rule.basePaths = {"/home/me/area"};
    made.items = {{path, 1}, {"/home/me/area/kept/x", 1}};
    return made;
}

struct Row
{
    std::vector<std::optional<std::int64_t>> freeBytes;
    bool dryRun;
    std::vector<CleaningSelection> chosen;
    std::string removed;
    std::string log;
    std::int64_t visibleFreedBytes;
};

} // namespace

TEST(Clean, ClearsFilesThenToolsAndMeasuresTheFreeSpaceAroundThem)
{
    const CleaningSelection tool = selection(RuleKind::command, "label");
    const CleaningSelection file = selection(RuleKind::fileSystem, "/home/me/area/file");
    const Row rows[] = {
        {{100, 150}, false, {tool, file}, "/home/me/area/file label ", "file tool ", 50},
        {{100, 150}, true, {tool, file}, "/home/me/area/file label ", "dry-tool ", 0},
        {{150, 100}, false, {file}, "/home/me/area/file ", "file ", 0},
        {{std::nullopt, 50}, false, {tool}, "label ", "tool ", 50},
        {{100, std::nullopt}, false, {}, "", "", 0},
    };
    for (const Row& row : rows) {
        std::string log;
        const auto disk = std::make_shared<ScriptedDisk>();
        disk->add("/home/me/area", "file", 1);
        disk->capacities = row.freeBytes;
        disk->onRemove = [&](const std::string&) { log += "file "; };
        const Clean clean("/home/me", disk, {"/home/me/area/kept"},
                          [&](auto selections, bool dryRun, const std::stop_token&) {
                              log += dryRun ? "dry-tool " : "tool ";
                              EXPECT_EQ(selections.size(), 1U);
                              return CleaningReport{{{selections[0].items[0].path, 1}}, {}};
                          });
        const Clean::Outcome outcome = clean.run(row.chosen, row.dryRun, {});
        std::string removed;
        for (const CleaningReport::RemovedItem& item : outcome.report.removed) {
            removed += item.path + ' ';
        }
        EXPECT_EQ(removed, row.removed);
        EXPECT_EQ(log, row.log);
        EXPECT_EQ(outcome.visibleFreedBytes, row.visibleFreedBytes);
    }
}

} // namespace CleanCoreTests
