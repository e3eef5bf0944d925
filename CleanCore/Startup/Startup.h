#pragma once

#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Rules/RulesCatalog.h"
#include "CleanCore/Startup/HomeEnvironment.h"

#include <optional>
#include <string>

/// Turns the options that both programs share into the objects that they work with. An option that
/// cannot be used throws StartError.
namespace CleanCore::Startup {

/// The home of `--home`, or the user's. Changes the process's environment for another home, so it
/// must run before any thread is started.
[[nodiscard]] HomeEnvironment openHome(const std::optional<std::string>& home);

/// Throws on the account's own home, for options that are only for trying things out.
void requireOtherHome(const HomeEnvironment& home, const std::string& option);

/// The tools of `--tools`, or the system's; see ToolLocations.
[[nodiscard]] ToolLocations openTools(const std::optional<std::string>& root,
                                      const HomeEnvironment& home);

/// The programs that work for cloud drives: those of openTools(), and in another home, if `root` is
/// "/", the system's. For nothing else: an area's tool would empty the account's own stores, while
/// a drive's program is pointed at a folder of this home.
[[nodiscard]] ToolLocations openCloudTools(const std::optional<std::string>& root,
                                           const HomeEnvironment& home);

/// The catalog of `--catalog`, or the bundled one.
[[nodiscard]] RulesCatalog openCatalog(const std::optional<std::string>& file);

/// Refuses a catalog from a file that would offer too much of the account's own home; see
/// refusedBase().
void requireHarmless(const RulesCatalog& catalog, const std::optional<std::string>& file,
                     const HomeEnvironment& home);

} // namespace CleanCore::Startup
