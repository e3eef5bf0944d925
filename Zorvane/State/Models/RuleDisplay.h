#pragma once

#include "CleanCore/Rules/TextTable.h"

#include <QString>
#include <string_view>

/// How rules are named to people.
namespace Zorvane::RuleDisplay {

/// The title of a rule in the table's language, or its id where there is none.
[[nodiscard]] inline QString title(std::string_view ruleId, const CleanCore::TextTable& texts)
{
    return QString::fromStdString(texts.ruleTitle(ruleId));
}

} // namespace Zorvane::RuleDisplay
