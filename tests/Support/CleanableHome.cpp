#include "tests/Support/CleanableHome.h"

#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Scanning/ItemEnumerator.h"
#include "CleanCore/Support/PathText.h"
#include "tests/Support/Table.h"
#include "tests/Support/TreeText.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;

CleaningSelection CleanableHome::scan(const Bases& bases) const
{
    CleaningSelection selection;
    selection.rule.id = "area";
    selection.rule.basePaths = bases;
    for (const std::string& base : PathExpander::expandAll(bases, path(), *files)) {
        std::vector<ScannedItem> items = ItemEnumerator(files).items(base, 0, {}, distantPast);
        std::sort(items.begin(), items.end(),
                  [](const ScannedItem& a, const ScannedItem& b) { return a.path < b.path; });
        selection.items.insert(selection.items.end(), items.begin(), items.end());
    }
    return selection;
}

CleaningSelection CleanableHome::select(std::string_view relative, const Bases& bases) const
{
    CleaningSelection selection = scan({PathText::parent(path(relative))});
    std::erase_if(selection.items,
                  [&](const ScannedItem& item) { return item.path != path(relative); });
    selection.items.at(0).sizeBytes = selectedBytes;
    selection.rule.basePaths = bases;
    return selection;
}

CleaningReport CleanableHome::clean(const CleaningSelection& selection, bool dryRun) const
{
    // The folders that are protected now, not when the home was made.
    const UserFolders folders = UserFolders::confinedTo(path());
    return CleanEngine(path(), files, folders.protectedFolders).clean({&selection, 1}, dryRun);
}

std::string CleanableHome::outcomeOf(const CleaningSelection& selection) const
{
    const std::string dry = describe(clean(selection, true), selection.items.front());
    std::string wet = describe(clean(selection), selection.items.front());
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
    if (report.removed.size() + report.skipped.size() != 1) {
        return "not exactly one entry";
    }
    const bool isRemoved = !report.removed.empty();
    if ((isRemoved ? report.removed[0].path : report.skipped[0].path) != item.path) {
        return "another path";
    }
    if (isRemoved) {
        const std::int64_t bytes = report.removed[0].bytes;
        return "removed " + (bytes == item.sizeBytes ? "all" : std::to_string(bytes));
    }
    return report.skipped[0].reason == CleaningReport::SkipReason::removalFailed ? "failed"
                                                                                 : "blocked";
}

} // namespace CleanCoreTests
