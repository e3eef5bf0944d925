#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <string>
#include <variant>
#include <vector>

namespace CleanCore {

/// A rule's work begins.
struct RuleStarted
{
    std::string ruleId;
};

/// A rule's work has finished.
struct RuleCompleted
{
    CategoryResult result;
};

/// Every rule has finished and the scan was not cancelled; always the last event. The results are
/// in the order in which they were completed.
struct Finished
{
    std::vector<CategoryResult> results;
};

using ScanEvent = std::variant<RuleStarted, RuleCompleted, Finished>;

} // namespace CleanCore
