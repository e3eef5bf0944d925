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

bool clearWholeArea(const ToolRuns& tools, const CommandArea& area)
{
    return tools.run(area.tool, area.clearingArguments({})).has_value();
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
        const Clearing clearing = area != nullptr ? area->clearing : Clearing::never;
        if (clearing == Clearing::never || clearing == Clearing::wholeArea) {
            const bool isRemoved =
                clearing == Clearing::wholeArea && clearWholeArea(m_tools, *area);
            for (const ScannedItem& item : selection.items) {
                record(area, item, isRemoved, report);
            }
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
        if (selection.rule.kind != RuleKind::command) {
            continue;
        }
        const CommandArea* const area = commandArea(selection.rule.id);
        const bool isRemoved = area != nullptr && area->clearing != Clearing::never;
        for (const ScannedItem& item : selection.items) {
            record(area, item, isRemoved, report);
        }
    }
    return report;
}

} // namespace CleanCore
