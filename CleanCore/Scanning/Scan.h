#pragma once

#include "CleanCore/Scanning/CategoryResult.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class FileManager;
class TaskPool;

/// The course of a scan from the rules to the list that is shown: first the file-system areas, then
/// those of tools. It removes nothing. An immutable value; safe from many threads at once.
class Scan
{
public:
    /// Measures the command rules among `rules`; see CommandScanEngine::scan().
    using ToolAreas = std::function<std::vector<CategoryResult>(std::span<const CleaningRule> rules,
                                                                const std::stop_token& stop)>;

    /// Called by run(), on its thread.
    struct Progress
    {
        std::function<void(const std::string& ruleId)> ruleStarted = [](const std::string&) {};
        /// The total size of all requested file-system areas that are completed.
        std::function<void(std::int64_t bytes)> bytesFound = [](std::int64_t) {};
        /// The file-system areas are completed; those of tools follow.
        std::function<void()> filesScanned = [] {};
    };

    /// Without `toolAreas`, the command rules are left out.
    Scan(std::string home, std::shared_ptr<const FileManager> fileManager,
         std::shared_ptr<TaskPool> pool, ToolAreas toolAreas = {});

    /// Blocks until the scan has ended and returns its results as resultList() does, or nothing if
    /// a stop was requested. `rules` are the requested rules, all of `catalog` or a part of it; a
    /// part has the same results as in a scan of the whole catalog. `now` is the reference for age
    /// limits.
    [[nodiscard]] std::optional<std::vector<CategoryResult>>
    run(std::span<const CleaningRule> rules, std::span<const CleaningRule> catalog, Timestamp now,
        const Progress& progress, const std::stop_token& stop) const;

private:
    std::string m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<TaskPool> m_pool;
    ToolAreas m_toolAreas;
};

} // namespace CleanCore
