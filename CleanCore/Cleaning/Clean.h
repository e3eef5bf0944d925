#pragma once

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Cleaning/CleaningSelection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;

/// One clean of all that was chosen: the file-system areas first, then those of tools. An immutable
/// value; one clean at a time is the caller's responsibility.
class Clean
{
public:
    /// Clears the chosen items of command rules, or previews that; see CommandCleanEngine.
    using ToolAreas = std::function<CleaningReport(std::span<const CleaningSelection> selections,
                                                   bool dryRun, const std::stop_token& stop)>;

    struct Outcome
    {
        CleaningReport report;
        /// Growth of the free space on the volume of the home; never negative, 0 for a dry run.
        std::int64_t visibleFreedBytes = 0;
    };

    /// `furtherProtected`: see CleanEngine.
    Clean(std::string home, std::shared_ptr<const FileManager> fileManager,
          std::vector<std::string> furtherProtected, ToolAreas toolAreas);

    /// Blocks until the clean has ended, and never fails as a whole. After a stop request the item
    /// in hand is finished; items that were not reached are not in the report.
    [[nodiscard]] Outcome run(std::vector<CleaningSelection> selections, bool dryRun,
                              const std::stop_token& stop) const;

private:
    [[nodiscard]] std::int64_t volumeFreeBytes() const;

    std::string m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::vector<std::string> m_furtherProtected;
    ToolAreas m_toolAreas;
};

} // namespace CleanCore
