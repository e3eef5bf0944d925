#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// How a rule's items are treated by default.
enum class RuleTier { safe, reviewRequired };

/// How a rule is carried out.
enum class RuleKind { fileSystem, command };

/// The names of the cases in the catalog and in the terminal's JSON: "A" and "B".
[[nodiscard]] std::string_view name(RuleTier tier);
/// The same: "fileSystem" and "command".
[[nodiscard]] std::string_view name(RuleKind kind);

/// One area that can be cleaned.
struct CleaningRule
{
    std::string id;
    RuleTier tier = RuleTier::reviewRequired;
    RuleKind kind = RuleKind::fileSystem;
    std::string titleKey;
    /// Patterns of the folders whose direct entries are the rule's items; see PathExpander.
    std::vector<std::string> basePaths;
    /// Minimum age, in days, of an item's newest change; 0 means no limit.
    std::int64_t minAgeDays = 0;
    /// Names of direct entries that are never items of this rule. Never contain "/".
    std::vector<std::string> exclusions;
};

/// Decoding is strict: every key is required, nothing is converted, and an integer must be written
/// as one and fit. Throws nlohmann::json::exception.
void from_json(const nlohmann::json& json, CleaningRule& rule);
/// Writes the keys in the order of the fields.
void to_json(nlohmann::ordered_json& json, const CleaningRule& rule);

} // namespace CleanCore
