#include "CleanCore/Cleaning/Clean.h"

#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/Cleaning/SelectionReclaim.h"
#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"
#include "CleanCore/Support/PathText.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

Shortfall Clean::Outcome::shortfall() const
{
    Shortfall shortfall = shortfallOf(report.totalBytesFreed(), growth.bytes(), removed);
    if (growth.isStillBeingFreed) {
        shortfall.unexplainedBytes = 0;
    }
    return shortfall;
}

Clean::Clean(std::string home, std::shared_ptr<const FileManager> fileManager,
             std::vector<std::string> furtherProtected, ToolAreas toolAreas,
             std::shared_ptr<const ReclaimSurvey> survey)
    : m_home(std::move(home)), m_fileManager(std::move(fileManager)),
      m_furtherProtected(std::move(furtherProtected)), m_toolAreas(std::move(toolAreas)),
      m_survey(std::move(survey))
{
}

Clean::Outcome Clean::run(std::vector<CleaningSelection> selections, bool dryRun,
                          const std::stop_token& stop) const
{
    const auto firstOfTools = std::stable_partition(
        selections.begin(), selections.end(), [](const CleaningSelection& selection) {
            return selection.rule.kind == RuleKind::fileSystem;
        });
    const std::span<const CleaningSelection> ofFiles(selections.begin(), firstOfTools);
    const std::span<const CleaningSelection> ofTools(firstOfTools, selections.end());

    examine(selections, *m_survey, stop);
    std::optional<FreeSpaceWatch> freeSpace;
    if (!dryRun) {
        freeSpace = watchVolumes(ofFiles);
    }
    Outcome outcome;
    const CleanEngine engine(m_home, m_fileManager, m_furtherProtected);
    outcome.report = engine.clean(ofFiles, dryRun, stop);
    if (!ofTools.empty()) {
        outcome.report = outcome.report.merging(m_toolAreas(ofTools, dryRun, stop));
    }
    outcome.chosen = dryRun ? reclaimOf(selections, outcome.report) : reclaimOf(selections);
    outcome.removed = reclaimOfRemoved(selections, outcome.report);
    if (freeSpace) {
        outcome.growth = freeSpace->growth(outcome.removed);
    }
    return outcome;
}

FreeSpaceWatch Clean::watchVolumes(std::span<const CleaningSelection> ofFiles) const
{
    std::vector<std::string> folders = {m_home};
    for (const CleaningSelection& selection : ofFiles) {
        for (const ScannedItem& item : selection.items) {
            std::string folder = PathText::parent(item.path);
            if (folder != folders.back()) {
                folders.push_back(std::move(folder));
            }
        }
    }
    return m_survey->watchFreeSpace(folders);
}

} // namespace CleanCore
