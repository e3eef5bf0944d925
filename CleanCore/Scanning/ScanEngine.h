#pragma once

#include "CleanCore/Scanning/ScanEvent.h"
#include "CleanCore/Support/EventStream.h"

#include <memory>
#include <span>
#include <string>

namespace CleanCore {

class FileManager;
class TaskPool;

/// Runs the file-system rules of a catalog, all at once. It removes nothing.
class ScanEngine
{
public:
    ScanEngine(std::string home, std::shared_ptr<const FileManager> fileManager,
               std::shared_ptr<TaskPool> pool);

    /// Starts a scan and returns its events at once. Rules of other kinds are left out. For one
    /// rule RuleStarted comes before RuleCompleted; a base that exists and cannot be listed, and a
    /// wildcard that was not followed to its end, set its hadAccessErrors and stop nothing.
    /// Cancelling or dropping the stream cancels the scan; no Finished comes then. `now` is the
    /// reference for age limits.
    [[nodiscard]] EventStream<ScanEvent> scan(std::span<const CleaningRule> rules,
                                              Timestamp now) const;

private:
    std::string m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<TaskPool> m_pool;
};

} // namespace CleanCore
