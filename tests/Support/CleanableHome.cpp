#include "tests/Support/CleanableHome.h"

#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Scanning/ItemEnumerator.h"
#include "CleanCore/Support/PathText.h"
#include "tests/Support/Table.h"
#include "tests/Support/TreeText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>

namespace CleanCoreTests {

using namespace CleanCore;

std::shared_ptr<const LinuxFileManager> CleanableHome::visibleFiles() const
{
    return std::make_shared<LinuxFileManager>(UserFolders::confinedTo(folder.path()), folder.path(),
                                              pool);
}

CleanEngine CleanableHome::engine() const
{
    return {folder.path(), files, UserFolders::confinedTo(folder.path()).protectedFolders};
}

CleaningSelection CleanableHome::scan(const std::vector<std::string>& basePaths) const
{
    CleaningSelection selection;
    selection.rule.id = "area";
    selection.rule.basePaths = basePaths;
    for (const std::string& base : PathExpander::expandAll(basePaths, folder.path(), *files)) {
        std::vector<ScannedItem> items = ItemEnumerator(files).items(base, 0, {}, distantPast);
        std::sort(items.begin(), items.end(),
                  [](const ScannedItem& a, const ScannedItem& b) { return a.path < b.path; });
        selection.items.insert(selection.items.end(), items.begin(), items.end());
    }
    return selection;
}

ScannedItem CleanableHome::item(std::string_view relative) const
{
    const std::string path = folder.path(relative);
    for (ScannedItem& found :
         ItemEnumerator(files).items(PathText::parent(path), 0, {}, distantPast)) {
        if (found.path == path) {
            return std::move(found);
        }
    }
    throw std::runtime_error("a scan does not list " + path);
}

CleaningSelection CleanableHome::select(std::string_view relative,
                                        const std::vector<std::string>& basePaths) const
{
    CleaningSelection selection;
    selection.rule.id = "area";
    selection.rule.basePaths = basePaths;
    selection.items = {item(relative)};
    selection.items.front().sizeBytes = selectedBytes;
    return selection;
}

CleaningReport CleanableHome::clean(const CleaningSelection& selection, bool dryRun) const
{
    return engine().clean({&selection, 1}, dryRun);
}

std::string CleanableHome::outcomeOf(std::string_view relative,
                                     const std::vector<std::string>& basePaths) const
{
    return outcomeOf(select(relative, basePaths));
}

std::string CleanableHome::outcomeOf(const CleaningSelection& selection) const
{
    const std::string dry = describe(clean(selection, true), selection.items.front());
    const std::string wet = describe(clean(selection), selection.items.front());
    EXPECT_EQ(dry, wet == "removed 0" ? "removed all" : wet) << "in a dry run";
    return wet;
}

void CleanableHome::expectOutcomes(const std::vector<OutcomeRow>& rows) const
{
    for (const OutcomeRow& row : rows) {
        const std::string name = treeEntries(row.entry).front().path;
        const bool wasThere = has(name);
        const std::string before = snapshot(path());
        make(row.entry);
        const std::string made = snapshot(path());
        EXPECT_EQ(outcomeOf(name, words(row.bases)), row.outcome)
            << row.entry << " from " << row.bases;
        const bool isRemoved = row.outcome.starts_with("removed");
        EXPECT_NE(has(name), isRemoved) << row.entry;
        if (!isRemoved) {
            EXPECT_EQ(snapshot(path()), made) << row.entry;
        } else if (!wasThere) {
            EXPECT_EQ(snapshot(path()), before) << row.entry;
        }
        if (!isRemoved && !wasThere) {
            remove(name);
        }
    }
}

std::string describe(const CleaningReport& report, const ScannedItem& item)
{
    using Removed = CleaningReport::RemovedItem;
    using Skipped = CleaningReport::SkippedItem;
    if (report.removed.size() + report.skipped.size() != 1) {
        return "not exactly one entry";
    }
    if (report.removed == std::vector<Removed>{{item.path, item.sizeBytes}}) {
        return "removed all";
    }
    if (!report.removed.empty()) {
        return "removed " + std::to_string(report.removed.front().bytes);
    }
    using enum CleaningReport::SkipReason;
    if (report.skipped == std::vector<Skipped>{{item.path, blockedBySafetyGuard}}) {
        return "blocked";
    }
    return report.skipped == std::vector<Skipped>{{item.path, removalFailed}} ? "failed"
                                                                              : "another path";
}

} // namespace CleanCoreTests
