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
    /// The stop token is looked at before each run of a tool; rules that were not finished by then
    /// have no result. To end a run that is under way, give the runner the same token.
    [[nodiscard]] std::vector<CategoryResult> scan(std::span<const CleaningRule> rules,
                                                   const std::stop_token& stop = {}) const;

private:
    ToolRuns m_tools;
};

} // namespace CleanCore
