#include "tests/Support/CleanableHome.h"

#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Scanning/ItemEnumerator.h"
#include "CleanCore/Support/PathText.h"
#include "tests/Support/Table.h"

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
        std::ranges::sort(items, {}, &ScannedItem::path);
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
    for (const auto& [entry, bases, outcome] : rows) {
        SCOPED_TRACE(testing::Message() << entry << " from " << bases);
        const std::string name =
            entry.substr(0, std::min(entry.find("->"), entry.find_last_not_of('/') + 1));
        const bool wasThere = has(name);
        const std::string before = snapshot(path());
        make(entry);
        const std::string made = snapshot(path());
        EXPECT_EQ(outcomeOf(name, words(bases)), outcome);
        const bool isRemoved = outcome.starts_with("removed");
        EXPECT_NE(has(name), isRemoved);
        if (!isRemoved || !wasThere) {
            EXPECT_EQ(snapshot(path()), isRemoved ? before : made);
        }
        if (!wasThere) {
            remove(name);
        }
    }
}

std::string describe(const CleaningReport& report, const ScannedItem& item)
{
    if (report.removed == std::vector<CleaningReport::RemovedItem>{{item.path, item.sizeBytes}}) {
        return "removed all";
    }
    if (report.removed.size() + report.skipped.size() != 1) {
        return "not exactly one entry";
    }
    if (!report.removed.empty()) {
        return "removed " + std::to_string(report.removed[0].bytes);
    }
    const bool isFailure = report.skipped[0].reason == CleaningReport::SkipReason::removalFailed;
    return report.skipped[0].path != item.path ? "another path" : isFailure ? "failed" : "blocked";
}

} // namespace CleanCoreTests
