#include "CleanCore/Cleaning/SelectionReclaim.h"

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Reclaim/ReclaimSum.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

namespace {

/// Adds up the items for which `isCounted(path)`, asked in the order of a clean.
template <typename IsCounted>
Reclaim sumOf(std::span<const CleaningSelection> selections, IsCounted isCounted)
{
    ReclaimSum sum;
    for (const RuleKind kind : {RuleKind::fileSystem, RuleKind::command}) {
        for (const CleaningSelection& selection : selections) {
            for (std::size_t i = 0; selection.rule.kind == kind && i < selection.items.size();
                 ++i) {
                const ScannedItem& item = selection.items[i];
                if (isCounted(item.path)) {
                    addToSum(sum, kind, selection.isShownOnly, item,
                             i < selection.findings.size() ? selection.findings[i]
                                                           : ReclaimFindings());
                }
            }
        }
    }
    return sum.result();
}

} // namespace

void addToSum(ReclaimSum& sum, RuleKind kind, bool isShownOnly, const ScannedItem& item,
              const ReclaimFindings& findings)
{
    if (isShownOnly) {
        sum.addShownOnly(item.sizeBytes);
    } else if (kind == RuleKind::command) {
        sum.addOfTool(item.sizeBytes);
    } else if (item.obstacle != Obstacle::none) {
        sum.addLeftInPlace(item.sizeBytes);
    } else {
        sum.add(item.sizeBytes, findings);
    }
}

void examine(std::span<CleaningSelection> selections, const ReclaimSurvey& survey,
             const std::stop_token& stop)
{
    for (CleaningSelection& selection : selections) {
        if (selection.rule.kind != RuleKind::fileSystem) {
            continue;
        }
        selection.findings.resize(selection.items.size());
        std::vector<std::string_view> paths;
        std::vector<std::size_t> positions;
        for (std::size_t i = 0; i < selection.items.size(); ++i) {
            if (needsExamining(selection.items[i], selection.findings[i])) {
                paths.push_back(selection.items[i].path);
                positions.push_back(i);
            }
        }
        std::vector<ReclaimFindings> findings = survey.examine(paths, stop);
        for (std::size_t i = 0; i < positions.size(); ++i) {
            selection.findings[positions[i]] = std::move(findings[i]);
        }
    }
}

Reclaim reclaimOf(std::span<const CleaningSelection> selections)
{
    return sumOf(selections, [](const std::string&) { return true; });
}

Reclaim reclaimOfRemoved(std::span<const CleaningSelection> selections,
                         const CleaningReport& report)
{
    // A report lists what was removed in the order of the selections.
    auto next = report.removed.begin();
    return sumOf(selections, [&](const std::string& path) {
        const bool isRemoved = next != report.removed.end() && next->path == path;
        next += isRemoved ? 1 : 0;
        return isRemoved;
    });
}

} // namespace CleanCore
