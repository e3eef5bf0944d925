#include "CleanCore/Commands/CommandCleanEngine.h"

#include <set>

namespace CleanCore {

namespace {

using Clearing = CommandArea::Clearing;

/// The paths that the area's tool lists now.
std::set<std::string> pathsListed(const ToolRuns& tools, const CommandArea& area)
{
    std::set<std::string> paths;
    if (const auto items = tools.list(area, {})) {
        for (const ScannedItem& item : *items) {
            paths.insert(item.path);
        }
    }
    return paths;
}

void record(const CommandArea* area, const ScannedItem& item, bool isRemoved,
            CleaningReport& report)
{
    if (isRemoved) {
        const bool isCredited = area->credit == CommandArea::Credit::scannedSize;
        report.removed.push_back({item.path, isCredited ? item.sizeBytes : 0});
    } else {
        report.skipped.push_back({item.path, CleaningReport::SkipReason::removalFailed});
    }
}

void recordAll(const CommandArea* area, const CleaningSelection& selection, bool isRemoved,
               CleaningReport& report)
{
    for (const ScannedItem& item : selection.items) {
        record(area, item, isRemoved, report);
    }
}

/// Whether the area's tool can clear these items, and no others with them.
bool canClear(const CommandArea* area, const CleaningSelection& selection)
{
    return area != nullptr && area->clearing != Clearing::never &&
           (area->clearing != Clearing::wholeArea || selection.itemsLeftOut == 0);
}

void clearItems(const ToolRuns& tools, const CommandArea& area, std::span<const ScannedItem> items,
                const std::stop_token& stop, CleaningReport& report)
{
    const bool mustBeListed = area.clearing == Clearing::singleItemsStillListed;
    const std::set<std::string> listed =
        mustBeListed ? pathsListed(tools, area) : std::set<std::string>();
    for (const ScannedItem& item : items) {
        if (stop.stop_requested()) {
            return;
        }
        const bool isRemoved = (!mustBeListed || listed.contains(item.path)) &&
                               tools.run(area.tool, area.clearingArguments(item.path)).has_value();
        record(&area, item, isRemoved, report);
    }
}

} // namespace

CommandCleanEngine::CommandCleanEngine(std::shared_ptr<const CommandRunning> runner,
                                       ToolLocations locations)
    : m_tools(std::move(runner), std::move(locations))
{
}

CleaningReport CommandCleanEngine::clean(std::span<const CleaningSelection> selections,
                                         const std::stop_token& stop) const
{
    CleaningReport report;
    for (const CleaningSelection& selection : selections) {
        if (selection.rule.kind != RuleKind::command || selection.items.empty()) {
            continue;
        }
        if (stop.stop_requested()) {
            break;
        }
        const CommandArea* const area = commandArea(selection.rule.id);
        if (!canClear(area, selection)) {
            recordAll(area, selection, false, report);
        } else if (area->clearing == Clearing::wholeArea) {
            const bool isCleared = m_tools.run(area->tool, area->clearingArguments({})).has_value();
            recordAll(area, selection, isCleared, report);
        } else {
            clearItems(m_tools, *area, selection.items, stop, report);
        }
    }
    return report;
}

CleaningReport CommandCleanEngine::preview(std::span<const CleaningSelection> selections) const
{
    CleaningReport report;
    for (const CleaningSelection& selection : selections) {
        if (selection.rule.kind == RuleKind::command) {
            const CommandArea* const area = commandArea(selection.rule.id);
            recordAll(area, selection, canClear(area, selection), report);
        }
    }
    return report;
}

CleaningReport CommandCleanEngine::run(std::span<const CleaningSelection> selections, bool dryRun,
                                       const std::stop_token& stop) const
{
    return dryRun ? preview(selections) : clean(selections, stop);
}

} // namespace CleanCore
