#include "CleanCore/Cleaning/CleanEngine.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

using SkipReason = CleaningReport::SkipReason;

namespace {

/// The base that the entry itself lies in directly, if there is one: a link's may be another than
/// the one that allows it by where the link leads.
const std::string& holdingBase(const std::string& path, std::span<const std::string> bases,
                               const std::string& otherwise)
{
    const std::string parent = PathText::parent(path);
    const auto base = std::find_if(bases.begin(), bases.end(), [&](const std::string& candidate) {
        return PathText::withoutTrailingSlashes(candidate) == parent;
    });
    return base == bases.end() ? otherwise : *base;
}

/// What the guard would say, could it see what an item holds.
SkipReason reasonFor(int removalError)
{
    return removalError == protectedEntryError ? SkipReason::blockedBySafetyGuard
                                               : SkipReason::removalFailed;
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
                report.skipped.push_back({item.path, SkipReason::blockedBySafetyGuard});
                continue;
            }
            const std::string& holding = holdingBase(item.path, bases, *base);
            // A dry run credits a link with what was scanned; that it frees nothing, only its
            // removal tells.
            const RemovalOutcome outcome =
                dryRun ? RemovalOutcome{removal->check(holding, item.path, item.identity)}
                       : removal->remove(holding, item.path, item.identity);
            if (outcome.error != 0) {
                report.skipped.push_back({item.path, reasonFor(outcome.error)});
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
    // Whether any base allows it does not depend on their order, and the one that it lies in
    // answers at once where a rule has hundreds.
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
