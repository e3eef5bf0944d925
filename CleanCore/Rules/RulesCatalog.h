#pragma once

#include "CleanCore/Rules/CleaningRule.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// The catalog of everything that can be cleaned. All operations are safe from any thread.
struct RulesCatalog
{
    /// Read and kept; no value is refused.
    std::int64_t schemaVersion = 0;
    /// In document order, which is the order in which scans start them.
    std::vector<CleaningRule> rules;

    /// Reads the catalog that ships with the program. Throws CleanCoreError (rulesCatalogMissing,
    /// rulesCatalogInvalid), std::system_error when the file cannot be read, or the JSON library's
    /// exception.
    [[nodiscard]] static RulesCatalog loadBundled();

    /// Reads a catalog file; throws as load() does, or std::system_error.
    [[nodiscard]] static RulesCatalog loadFile(const std::string& path);

    /// Decodes and validates a catalog. Throws nlohmann::json::exception for anything that is not a
    /// catalog, CleanCoreError::rulesCatalogInvalid for duplicate ids and exclusions with "/".
    [[nodiscard]] static RulesCatalog load(std::string_view bytes);
};

void to_json(nlohmann::ordered_json& json, const RulesCatalog& catalog);

} // namespace CleanCore
