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
        std::optional<std::vector<ScannedItem>> items;
        if (const CommandArea* const area = commandArea(rule.id)) {
            items = m_tools.list(*area, stop);
        }
        if (!items && stop.stop_requested()) {
            break;
        }
        results.push_back(
            {.rule = rule, .items = std::move(items).value_or(std::vector<ScannedItem>())});
    }
    return results;
}

} // namespace CleanCore
