#include "CleanCore/Commands/CommandScanEngine.h"

namespace CleanCore {

CommandScanEngine::CommandScanEngine(std::shared_ptr<const CommandRunning> runner,
                                     ToolLocations locations)
    : m_tools(std::move(runner), std::move(locations))
{
}

std::vector<CategoryResult> CommandScanEngine::scan(std::span<const CleaningRule> rules,
                                                    const std::stop_token& stop) const
{
    std::vector<CategoryResult> results;
    for (const CleaningRule& rule : rules) {
        if (rule.kind != RuleKind::command) {
            continue;
        }
        const CommandArea* const area = commandArea(rule.id);
        const auto items = area != nullptr ? m_tools.list(*area, stop) : std::nullopt;
        if (!items && stop.stop_requested()) {
            break;
        }
        results.push_back(
            {.rule = rule,
             .items = items.value_or(std::vector<ScannedItem>()),
             .isClearedAsWhole =
                 area != nullptr && area->clearing == CommandArea::Clearing::wholeArea,
             .isShownOnly = area != nullptr && area->clearing == CommandArea::Clearing::never});
    }
    return results;
}

} // namespace CleanCore
