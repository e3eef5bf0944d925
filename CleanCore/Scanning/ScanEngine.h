#pragma once

#include "CleanCore/Scanning/ScanEvent.h"
#include "CleanCore/Support/EventStream.h"

#include <memory>
#include <span>
#include <string>

namespace CleanCore {

class FileManager;
class TaskPool;

/// Runs the file-system rules of a catalog concurrently. It removes nothing.
class ScanEngine
{
public:
    ScanEngine(std::string home, std::shared_ptr<const FileManager> fileManager,
               std::shared_ptr<TaskPool> pool);

    /// Starts a scan and returns the stream of its events at once. Rules of other kinds are left
    /// out. For each rule, RuleStarted precedes RuleCompleted. An existing base that cannot be
    /// listed, and a wildcard with too many matches, set the rule's hadAccessErrors; the scan goes
    /// on. Cancelling or dropping the stream cancels the scan, which then sends no Finished. `now`
    /// is the reference for age limits.
    [[nodiscard]] EventStream<ScanEvent> scan(std::span<const CleaningRule> rules,
                                              Timestamp now) const;

private:
    std::string m_home;
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<TaskPool> m_pool;
};

} // namespace CleanCore
