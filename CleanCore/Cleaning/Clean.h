#pragma once

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Reclaim/FreeSpaceWatch.h"
#include "CleanCore/Reclaim/Reclaim.h"
#include "CleanCore/Reclaim/Shortfall.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;
class ReclaimSurvey;

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
        /// How much free space the removal of everything that was chosen brings, and of what was
        /// removed.
        Reclaim chosen;
        Reclaim removed;
        /// The growth of the free space on the volumes of the home and of the items; nothing for a
        /// dry run.
        FreeSpaceWatch::Growth growth;

        /// Why less was gained than the report says is freed so far.
        [[nodiscard]] Shortfall shortfall() const;
    };

    /// `furtherProtected`: see CleanEngine.
    Clean(std::string home, std::shared_ptr<const FileManager> fileManager,
          std::vector<std::string> furtherProtected, ToolAreas toolAreas,
          std::shared_ptr<const ReclaimSurvey> survey);

    /// Blocks until the clean has ended; never fails as a whole. A stop request lets the current
    /// item finish and leaves the following ones out of the report. Items that were not examined
    /// yet are examined first.
    [[nodiscard]] Outcome run(std::vector<CleaningSelection> selections, bool dryRun,
                              const std::stop_token& stop) const;

private:
    [[nodiscard]] FreeSpaceWatch watchVolumes(std::span<const CleaningSelection> ofFiles) const;

    std::string m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::vector<std::string> m_furtherProtected;
    ToolAreas m_toolAreas;
    std::shared_ptr<const ReclaimSurvey> m_survey;
};

} // namespace CleanCore
