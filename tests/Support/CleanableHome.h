#pragma once

#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace CleanCoreTests {

/// What becomes of one entry when it is cleaned.
struct OutcomeRow
{
    /// A file, folder or link without a mode, as a tree's text: it is made first.
    std::string entry;
    /// The bases of its rule, separated by blanks.
    std::string bases;
    /// As CleanableHome::outcomeOf() tells it.
    std::string outcome;
};

/// A home of the test's own with the engines' real collaborators, confined to it. Paths are
/// relative to the home, but for those of bases.
class CleanableHome : public TemporaryFolder
{
public:
    using Bases = std::vector<std::string>;

    explicit CleanableHome(const std::string& tree = {}) { make(tree); }

    const std::shared_ptr<const CleanCore::FileManager> files =
        std::make_shared<CleanCore::LinuxFileManager>(CleanCore::UserFolders::confinedTo(path()),
                                                      path(),
                                                      std::make_shared<CleanCore::TaskPool>(2));

    /// A selection of everything that a scan finds now in these bases, in the order of the names.
    [[nodiscard]] CleanCore::CleaningSelection scan(const Bases& bases = {"~/.cache"}) const;
    /// A rule with these bases and the one item that a scan finds at `relative`, as if it had been
    /// measured at a size that no file system gives to an entry.
    [[nodiscard]] CleanCore::CleaningSelection select(std::string_view relative,
                                                      const Bases& bases = {"~/.cache"}) const;
    [[nodiscard]] CleanCore::CleaningReport clean(const CleanCore::CleaningSelection& selection,
                                                  bool dryRun = false) const;

    /// Cleans a selection of one item and tells how that ended: "removed BYTES" (the scanned size
    /// as "all"), "blocked" or "failed". Fails the test when a dry run just before foretold
    /// another end (of a link it may not know that it frees nothing).
    [[nodiscard]] std::string outcomeOf(const CleanCore::CleaningSelection& selection) const;

    /// Makes, scans and cleans the entry of each row, one row after the other. What is removed is
    /// to be all that changes; an entry that stays is taken away before the next row, if it was
    /// not there before.
    void expectOutcomes(const std::vector<OutcomeRow>& rows) const;
};

} // namespace CleanCoreTests
