#pragma once

#include "CleanCore/Cleaning/SelectionState.h"
#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>

namespace CleanCore {
class CommandRunning;
} // namespace CleanCore

namespace Zorvane {

/// One scan, from the catalog to the list that is shown, with all that it needs by value. run()
/// blocks and is for a thread of its own; the callbacks are called there, and may be called until
/// it returns.
struct ScanJob
{
    CleanCore::HomeEnvironment home;
    CleanCore::ToolLocations tools;
    std::shared_ptr<const CleanCore::CommandRunning> runner;
    std::function<CleanCore::RulesCatalog()> loadCatalog;
    std::function<CleanCore::Timestamp()> now;

    /// The catalog cannot be loaded; nothing else follows.
    std::function<void()> failed;
    std::function<void(const std::string& ruleId)> ruleStarted;
    /// The total of all file-system areas that are completed.
    std::function<void(std::int64_t bytes)> bytesFound;
    /// All file-system areas are completed; those of tools follow.
    std::function<void()> filesScanned;
    /// The results in the order in which they are shown, with what is chosen by default. Not called
    /// for a scan that was cancelled.
    std::function<void(const CleanCore::SelectionState& results)> finished;

    void run(const std::stop_token& cancelled) const;
};

} // namespace Zorvane
