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

/// What a scan or a clean works with, made from the options.
struct Workspace
{
    CleanCore::HomeEnvironment environment;
    CleanCore::ToolLocations tools;
    /// Every rule of the catalog.
    std::vector<CleanCore::CleaningRule> catalog;
    /// Those of them that are asked for.
    std::vector<CleanCore::CleaningRule> rules;
    CleanCore::TextTable texts;
    CleanCore::Timestamp now;
};

/// All of it; `rules` holds the rules named by `--rule`, in catalog order, or every one. Throws
/// CommandError and CleanCore::StartError.
[[nodiscard]] Workspace openWorkspace(const CommonOptions& options);

/// The texts of the user's language, from the environment.
[[nodiscard]] CleanCore::TextTable loadTexts();

} // namespace ZorvaneCLI
