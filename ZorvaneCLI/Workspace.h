#pragma once

#include "CleanCore/Platform/HomeEnvironment.h"
#include "CleanCore/Platform/ToolLocations.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Rules/TextTable.h"
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

/// The catalog to use: the bundled one or the named file. Throws CommandError.
[[nodiscard]] CleanCore::RulesCatalog loadCatalog(const std::optional<std::string>& file);

/// The home environment of `--home`; throws CommandError.
[[nodiscard]] CleanCore::HomeEnvironment openHome(const std::optional<std::string>& home);

/// Refuses, by CommandError, a catalog from a file that would offer more of the account's own home
/// than anyone means to clean.
void requireHarmless(const CleanCore::RulesCatalog& catalog, const CommonOptions& options,
                     const CleanCore::HomeEnvironment& environment);

/// All of it; `rules` holds the rules named by `--rule`, in catalog order, or every one. Throws
/// CommandError.
[[nodiscard]] Workspace openWorkspace(const CommonOptions& options);

/// The texts of the user's language, from the environment.
[[nodiscard]] CleanCore::TextTable loadTexts();

} // namespace ZorvaneCLI
