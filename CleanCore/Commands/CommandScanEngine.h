#pragma once

#include "CleanCore/Commands/ToolRuns.h"
#include "CleanCore/Scanning/CategoryResult.h"

#include <span>
#include <stop_token>
#include <vector>

namespace CleanCore {

/// Measures the areas that only tools can measure. It changes nothing. An immutable value, as safe
/// as its runner; scan() blocks while the tools run, one after the other.
class CommandScanEngine
{
public:
    explicit CommandScanEngine(std::shared_ptr<const CommandRunning> runner,
                               ToolLocations locations = ToolLocations::ofSystem());

    /// One result for each command rule, in order; rules of other kinds are left out. An area that
    /// is unknown, or whose tool is missing or fails, has no items. Never fails.
    ///
    /// The stop token is checked before each run of a tool; unfinished rules have no result. Give
    /// the runner the same token to end a run that is under way.
    [[nodiscard]] std::vector<CategoryResult> scan(std::span<const CleaningRule> rules,
                                                   const std::stop_token& stop = {}) const;

private:
    ToolRuns m_tools;
};

} // namespace CleanCore
