#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <string>
#include <variant>
#include <vector>

namespace CleanCore {

/// The work on a rule begins.
struct RuleStarted
{
    std::string ruleId;
};

/// The work on a rule has ended.
struct RuleCompleted
{
    CategoryResult result;
};

/// Every rule is completed and the scan was not cancelled; always the last event. The results are
/// in the order of their completion.
struct Finished
{
    std::vector<CategoryResult> results;
};

using ScanEvent = std::variant<RuleStarted, RuleCompleted, Finished>;

} // namespace CleanCore
