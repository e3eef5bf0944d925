#pragma once

#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Startup/HomeEnvironment.h"

#include <optional>
#include <string>

/// From the options that the terminal's program and the window share to what they work with. What
/// cannot be used throws StartError.
namespace CleanCore::Startup {

/// The home of `--home`, or the user's. Points the process's environment into another home, so it
/// comes before any thread is started.
[[nodiscard]] HomeEnvironment openHome(const std::optional<std::string>& home);

/// For options that are for trying things out: throws on the account's own home.
void requireOtherHome(const HomeEnvironment& home, const std::string& option);

/// The tools of `--tools`, or the system's; see ToolLocations.
[[nodiscard]] ToolLocations openTools(const std::optional<std::string>& root,
                                      const HomeEnvironment& home);

/// The catalog of `--catalog`, or the bundled one.
[[nodiscard]] RulesCatalog openCatalog(const std::optional<std::string>& file);

/// Refuses a catalog from a file that would offer more of the account's own home than anyone means
/// to clean.
void requireHarmless(const RulesCatalog& catalog, const std::optional<std::string>& file,
                     const HomeEnvironment& home);

} // namespace CleanCore::Startup
