#include "CleanCore/Cleaning/SelectionReclaim.h"

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Reclaim/ReclaimSum.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

namespace {

/// Calls `add(sum, selection, position)` for every item, in the order of a clean.
template <typename Add>
Reclaim sumOf(std::span<const CleaningSelection> selections, Add add)
{
    ReclaimSum sum;
    for (const RuleKind kind : {RuleKind::fileSystem, RuleKind::command}) {
        for (const CleaningSelection& selection : selections) {
            for (std::size_t i = 0; selection.rule.kind == kind && i < selection.items.size();
                 ++i) {
                add(sum, selection, i);
            }
        }
    }
    return sum.result();
}

void addItem(ReclaimSum& sum, const CleaningSelection& selection, std::size_t i)
{
    addToSum(sum, selection.rule.kind, selection.isShownOnly, selection.items[i],
             i < selection.findings.size() ? selection.findings[i] : ReclaimFindings());
}

/// Whether a report lists items as removed. It lists them in the order of a clean.
class RemovedItems
{
public:
    explicit RemovedItems(const CleaningReport& report)
        : m_next(report.removed.begin()), m_end(report.removed.end())
    {
    }

    /// To be asked in that order.
    [[nodiscard]] bool contain(const std::string& path)
    {
        const bool isRemoved = m_next != m_end && m_next->path == path;
        m_next += isRemoved ? 1 : 0;
        return isRemoved;
    }

private:
    std::vector<CleaningReport::RemovedItem>::const_iterator m_next;
    std::vector<CleaningReport::RemovedItem>::const_iterator m_end;
};

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
    return sumOf(selections, addItem);
}

Reclaim reclaimOf(std::span<const CleaningSelection> selections, const CleaningReport& preview)
{
    RemovedItems removed(preview);
    return sumOf(selections, [&](ReclaimSum& sum, const CleaningSelection& selection, auto i) {
        if (removed.contain(selection.items[i].path) || selection.isShownOnly) {
            addItem(sum, selection, i);
        } else {
            sum.addLeftInPlace(selection.items[i].sizeBytes);
        }
    });
}

Reclaim reclaimOfRemoved(std::span<const CleaningSelection> selections,
                         const CleaningReport& report)
{
    RemovedItems removed(report);
    return sumOf(selections, [&](ReclaimSum& sum, const CleaningSelection& selection, auto i) {
        if (removed.contain(selection.items[i].path)) {
            addItem(sum, selection, i);
        }
    });
}

} // namespace CleanCore
