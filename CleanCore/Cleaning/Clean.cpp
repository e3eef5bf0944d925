#include "CleanCore/Cleaning/Clean.h"

#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/FileSystem/FileManager.h"

#include <algorithm>
#include <utility>

namespace CleanCore {

Clean::Clean(std::string home, std::shared_ptr<const FileManager> fileManager,
             std::vector<std::string> furtherProtected, ToolAreas toolAreas)
    : m_home(std::move(home)), m_fileManager(std::move(fileManager)),
      m_furtherProtected(std::move(furtherProtected)), m_toolAreas(std::move(toolAreas))
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

    const std::int64_t before = volumeFreeBytes();
    const CleanEngine engine(m_home, m_fileManager, m_furtherProtected);
    CleaningReport report = engine.clean(ofFiles, dryRun, stop);
    if (!ofTools.empty()) {
        report = report.merging(m_toolAreas(ofTools, dryRun, stop));
    }
    const std::int64_t growth = volumeFreeBytes() - before;
    return {std::move(report), dryRun ? 0 : std::max<std::int64_t>(0, growth)};
}

std::int64_t Clean::volumeFreeBytes() const
{
    return m_fileManager->availableCapacity(m_home).value_or(0);
}

} // namespace CleanCore
