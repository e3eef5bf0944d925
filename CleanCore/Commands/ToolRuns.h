#pragma once

#include "CleanCore/Commands/CommandAreas.h"

#include <memory>
#include <optional>
#include <stop_token>

namespace CleanCore {

class CommandRunning;

/// Runs a tool at the first of its locations where that succeeds. An immutable value, as safe as
/// its runner.
class ToolRuns
{
public:
    ToolRuns(std::shared_ptr<const CommandRunning> runner, ToolLocations locations)
        : m_runner(std::move(runner)), m_locations(std::move(locations))
    {
    }

    /// The output of the first run that succeeds, over the tool's locations in order; nothing if
    /// none does. A missing tool and a failing one are not told apart.
    [[nodiscard]] std::optional<std::string> run(Tool tool,
                                                 const std::vector<std::string>& arguments) const;

    /// The items that the area's tool lists now; nothing if it cannot tell or `stop` came first.
    [[nodiscard]] std::optional<std::vector<ScannedItem>> list(const CommandArea& area,
                                                               const std::stop_token& stop) const;

private:
    std::shared_ptr<const CommandRunning> m_runner;
    ToolLocations m_locations;
};

} // namespace CleanCore
