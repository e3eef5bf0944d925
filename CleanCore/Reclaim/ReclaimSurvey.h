#pragma once

#include "CleanCore/Reclaim/FreeSpaceWatch.h"
#include "CleanCore/Reclaim/ReclaimFindings.h"

#include <cstddef>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

class FileManager;
class TaskPool;
class VolumeFacts;
struct SurveyLimits;

/// Finds out how much free space the removal of entries brings. It changes nothing.
///
/// One survey serves the results of one scan. Memory is bounded: beyond `recordLimit` files
/// with several names and shared or compressed extents (about 50 bytes each, and twice that while
/// they are added up) the answers become wider, but stay true. Safe from any thread; calls at the
/// same time do not disturb each other.
class ReclaimSurvey
{
public:
    static constexpr std::int64_t defaultRecordLimit = 500'000;

    ReclaimSurvey(std::shared_ptr<const FileManager> fileManager,
                  std::shared_ptr<const VolumeFacts> facts, std::shared_ptr<TaskPool> pool,
                  std::int64_t recordLimit = defaultRecordLimit);

    /// Examines the entries at these absolute paths; one of the findings for each, in their order.
    /// Those that cannot be reached, or that a stop request came before, are not examined. Blocks;
    /// all workers of the pool take part. Entries of one folder that follow each other are examined
    /// together.
    [[nodiscard]] std::vector<ReclaimFindings> examine(std::span<const std::string_view> paths,
                                                       const std::stop_token& stop) const;

    /// Notes the free space of the volumes that hold these folders.
    [[nodiscard]] FreeSpaceWatch watchFreeSpace(std::span<const std::string> folders) const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<const VolumeFacts> m_facts;
    std::shared_ptr<TaskPool> m_pool;
    std::shared_ptr<SurveyLimits> m_limits;
};

} // namespace CleanCore
