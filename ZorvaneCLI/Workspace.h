#pragma once

#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Rules/TextTable.h"
#include "CleanCore/Startup/HomeEnvironment.h"
#include "ZorvaneCLI/CommonOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace ZorvaneCLI {

/// Everything that a scan or a clean needs, made from the options.
struct Workspace
{
    CleanCore::HomeEnvironment environment;
    CleanCore::ToolLocations tools;
    /// All rules of the catalog.
    std::vector<CleanCore::CleaningRule> catalog;
    /// The requested ones among them.
    std::vector<CleanCore::CleaningRule> rules;
    CleanCore::TextTable texts;
    CleanCore::Timestamp now;
};

/// Makes a workspace; its `rules` are those named by `--rule`, in catalog order, or all. Throws
/// CommandError and CleanCore::StartError.
[[nodiscard]] Workspace openWorkspace(const CommonOptions& options);

/// Loads the texts in the language that the environment names.
[[nodiscard]] CleanCore::TextTable loadTexts();

} // namespace ZorvaneCLI
