#include "CleanCore/Cleaning/CleanEngine.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace CleanCore {

using SkipReason = CleaningReport::SkipReason;
using SkipCause = CleaningReport::SkipCause;

namespace {

/// The base that directly contains the entry, or `otherwise`. For a link it may differ from the
/// base that allows it, which is judged by the link's target.
const std::string& holdingBase(const std::string& path, std::span<const std::string> bases,
                               const std::string& otherwise)
{
    const std::string parent = PathText::parent(path);
    const auto base = std::find_if(bases.begin(), bases.end(), [&](const std::string& candidate) {
        return PathText::withoutTrailingSlashes(candidate) == parent;
    });
    return base == bases.end() ? otherwise : *base;
}

CleaningReport::SkippedItem skipped(const std::string& path, int removalError)
{
    switch (removalError) {
    case protectedEntryError:
        // Something protected inside the item; the guard cannot look inside.
        return {path, SkipReason::blockedBySafetyGuard};
    case foreignEntryError:
    case EXDEV:
        return {path, SkipReason::removalFailed, SkipCause::foreignEntries};
    case ESTALE:
        return {path, SkipReason::removalFailed, SkipCause::changedSinceScan};
    default:
        return {path, SkipReason::removalFailed};
    }
}

} // namespace

CleanEngine::CleanEngine(std::string home, std::shared_ptr<const FileManager> fileManager,
                         std::span<const std::string> furtherProtected)
    : m_home(std::move(home)), m_fileManager(std::move(fileManager)),
      m_safetyGuard(m_home, *m_fileManager, furtherProtected)
{
}

CleaningReport CleanEngine::clean(std::span<const CleaningSelection> selections, bool dryRun,
                                  const std::stop_token& stop) const
{
    CleaningReport report;
    const std::unique_ptr<Removal> removal =
        m_fileManager->beginRemoval(m_home, m_safetyGuard.protectedFolders());
    for (const CleaningSelection& selection : selections) {
        const std::vector<std::string> bases =
            PathExpander::expandAll(selection.rule.basePaths, m_home, *m_fileManager, stop);
        for (const ScannedItem& item : selection.items) {
            if (stop.stop_requested()) {
                return report;
            }
            const std::string* const base = allowingBase(item.path, bases);
            if (base == nullptr) {
                report.skipped.push_back(skipped(item.path, protectedEntryError));
                continue;
            }
            if (item.obstacle != Obstacle::none) {
                // A part of it would stay, and nobody chose to remove the rest alone.
                report.skipped.push_back({item.path, SkipReason::removalFailed,
                                          item.obstacle == Obstacle::notSeenWhole
                                              ? SkipCause::notSeenWhole
                                              : SkipCause::foreignEntries});
                continue;
            }
            const std::string& holding = holdingBase(item.path, bases, *base);
            // A dry run credits a link with its scanned size; only the removal finds out that it
            // frees nothing.
            const RemovalOutcome outcome =
                dryRun ? RemovalOutcome{removal->check(holding, item.path, item.identity)}
                       : removal->remove(holding, item.path, item.identity);
            if (outcome.error != 0) {
                report.skipped.push_back(skipped(item.path, outcome.error));
            } else {
                report.removed.push_back({item.path, outcome.wasSymbolicLink ? 0 : item.sizeBytes});
            }
        }
    }
    return report;
}

const std::string* CleanEngine::allowingBase(const std::string& path,
                                             std::span<const std::string> bases) const
{
    const auto allows = [&](const std::string& candidate) {
        return m_safetyGuard.validate(path, candidate).isAllowed();
    };
    // The order of the bases does not affect the answer; trying the base that contains the item
    // first is fast for a rule with hundreds of them.
    const std::string parent = PathText::parent(path);
    const auto isHolding = [&](const std::string& candidate) {
        return PathText::withoutTrailingSlashes(candidate) == parent && allows(candidate);
    };
    auto base = std::find_if(bases.begin(), bases.end(), isHolding);
    if (base == bases.end()) {
        base = std::find_if(bases.begin(), bases.end(), allows);
    }
    return base == bases.end() ? nullptr : &*base;
}

} // namespace CleanCore
