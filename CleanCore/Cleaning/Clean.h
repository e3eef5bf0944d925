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

/// The course of a clean: first the chosen items of file-system areas, then those of tools. An
/// immutable value; callers run one clean at a time.
class Clean
{
public:
    /// Clears the chosen items of command rules, or previews that; see CommandCleanEngine.
    using ToolAreas = std::function<CleaningReport(std::span<const CleaningSelection> selections,
                                                   bool dryRun, const std::stop_token& stop)>;

    struct Outcome
    {
        CleaningReport report;
        /// Growth of the free space on the home's volume; never negative, 0 for a dry run.
        std::int64_t visibleFreedBytes = 0;
    };

    /// `furtherProtected`: see CleanEngine.
    Clean(std::string home, std::shared_ptr<const FileManager> fileManager,
          std::vector<std::string> furtherProtected, ToolAreas toolAreas);

    /// Blocks until the clean has ended; never fails as a whole. A stop request lets the current
    /// item finish and leaves the following ones out of the report.
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
