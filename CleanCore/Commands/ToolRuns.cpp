#include "CleanCore/Commands/ToolRuns.h"

#include "CleanCore/Commands/Running/CommandRunning.h"

#include <exception>

namespace CleanCore {

std::optional<std::string> ToolRuns::run(Tool tool, const std::vector<std::string>& arguments) const
{
    for (const std::string& path : m_locations.paths(tool)) {
        try {
            return m_runner->run(path, arguments);
        } catch (const std::exception&) {
            continue; // Missing here or failing: another one may do.
        }
    }
    return std::nullopt;
}

std::optional<std::vector<ScannedItem>> ToolRuns::list(const CommandArea& area,
                                                       const std::stop_token& stop) const
{
    std::vector<std::string> outputs;
    for (const CommandArea::Arguments& arguments : area.listings) {
        std::optional<std::string> output =
            stop.stop_requested() ? std::nullopt : run(area.tool, arguments);
        if (!output) {
            return std::nullopt;
        }
        outputs.push_back(std::move(*output));
    }
    return area.items(outputs);
}

} // namespace CleanCore
