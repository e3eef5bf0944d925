#pragma once

#include "CleanCore/Rules/TextTable.h"

#include <QString>
#include <string_view>

/// The names of rules in the window.
namespace Zorvane::RuleDisplay {

/// The title of a rule in the table's language, or its id if it has none.
[[nodiscard]] inline QString title(std::string_view ruleId, const CleanCore::TextTable& texts)
{
    return QString::fromStdString(texts.ruleTitle(ruleId));
}

} // namespace Zorvane::RuleDisplay
