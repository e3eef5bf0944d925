#pragma once

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Commands/ToolRuns.h"

#include <span>
#include <stop_token>

namespace CleanCore {

/// Has tools clear the chosen items of their areas. An immutable value, as safe as its runner;
/// clean() blocks while the tools run, one after the other.
class CommandCleanEngine
{
public:
    /// The runner should never be stopped, so that a tool finishes its work.
    explicit CommandCleanEngine(std::shared_ptr<const CommandRunning> runner,
                                ToolLocations locations = ToolLocations::ofSystem());

    /// Never fails as a whole: every item of a command rule ends up in exactly one list of the
    /// report. Selections of other rules leave no trace. Items of an area that is unknown, or that
    /// cannot be cleaned, are skipped. Where a tool clears only the whole area, one run stands for
    /// all items, and a selection that leaves some of them out is skipped.
    ///
    /// The stop token is checked before each item or whole area. A removal under way is finished;
    /// items that were not reached are in neither list.
    [[nodiscard]] CleaningReport clean(std::span<const CleaningSelection> selections,
                                       const std::stop_token& stop = {}) const;

    /// What clean() reports when every tool succeeds. Runs none.
    [[nodiscard]] CleaningReport preview(std::span<const CleaningSelection> selections) const;

    /// preview() for a dry run, else clean(): the part that tools have in a Clean.
    [[nodiscard]] CleaningReport run(std::span<const CleaningSelection> selections, bool dryRun,
                                     const std::stop_token& stop) const;

private:
    ToolRuns m_tools;
};

} // namespace CleanCore
