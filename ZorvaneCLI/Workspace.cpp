#include "ZorvaneCLI/Workspace.h"

#include "CleanCore/Platform/FileManager.h"
#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/ForeignCatalog.h"
#include "CleanCore/Support/TextEquality.h"
#include "ZorvaneCLI/ExitStatus.h"
#include "ZorvaneCLI/TerminalText.h"
#include "ZorvaneCLI/TimeText.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

namespace ZorvaneCLI {

using CleanCore::CleanCoreError;
using CleanCore::CleaningRule;
using CleanCore::HomeEnvironment;
using CleanCore::RulesCatalog;

namespace {

CleanCore::Timestamp timeOf(const CommonOptions& options, const HomeEnvironment& environment)
{
    if (!options.now) {
        return std::chrono::system_clock::now();
    }
    if (!environment.isConfined) {
        throw CommandError(ExitStatus::wrongUsage,
                           "--now is for trying things out and needs another home (--home DIR)");
    }
    const auto time = parseTime(*options.now);
    if (!time) {
        throw CommandError(ExitStatus::wrongUsage,
                           "--now needs a time from 1678 to 2261, like 2026-01-31T08:00:00Z, "
                           "not \"" +
                               escaped(*options.now) + "\"");
    }
    return *time;
}

/// The JSON library's message without the "[json.exception.…] " in front.
std::string_view withoutCode(std::string_view message)
{
    const std::size_t end = message.find("] ");
    return message.substr(0, 1) == "[" && end != std::string_view::npos ? message.substr(end + 2)
                                                                        : message;
}

std::vector<CleaningRule> rulesNamed(const std::vector<std::string>& ids,
                                     const std::vector<CleaningRule>& rules)
{
    const auto isNamed = [&](const CleaningRule& rule) {
        return std::ranges::any_of(
            ids, [&](const std::string& id) { return CleanCore::areEquivalent(id, rule.id); });
    };
    for (const std::string& id : ids) {
        if (std::ranges::none_of(rules, [&](const CleaningRule& rule) {
                return CleanCore::areEquivalent(id, rule.id);
            })) {
            throw CommandError(ExitStatus::wrongUsage, "there is no area \"" + escaped(id) +
                                                           "\"; zorvane-cli rules lists them");
        }
    }
    std::vector<CleaningRule> named;
    std::copy_if(rules.begin(), rules.end(), std::back_inserter(named),
                 [&](const CleaningRule& rule) { return ids.empty() || isNamed(rule); });
    return named;
}

CleanCore::ToolLocations toolsFor(const CommonOptions& options, const HomeEnvironment& environment)
{
    if (!options.tools) {
        return CleanCore::ToolLocations::forHome(environment.isConfined, std::nullopt);
    }
    if (!environment.isConfined) {
        throw CommandError(ExitStatus::wrongUsage,
                           "--tools is for trying things out and needs another home (--home DIR)");
    }
    std::error_code error;
    const auto root = std::filesystem::canonical(*options.tools, error);
    if (error || !std::filesystem::is_directory(root)) {
        throw CommandError(ExitStatus::wrongUsage,
                           "--tools needs a folder, not " + escaped(*options.tools));
    }
    try {
        return CleanCore::ToolLocations::below(root.native());
    } catch (const std::invalid_argument& invalid) {
        throw CommandError(ExitStatus::wrongUsage, "--tools: " + escaped(invalid.what()));
    }
}

} // namespace

RulesCatalog loadCatalog(const std::optional<std::string>& file)
{
    const std::string name = file ? "the catalog " + escaped(*file) : "the bundled catalog";
    try {
        return file ? RulesCatalog::loadFile(*file) : RulesCatalog::loadBundled();
    } catch (const CleanCoreError& error) {
        throw CommandError(ExitStatus::catalogUnusable,
                           error.kind() == CleanCoreError::Kind::rulesCatalogMissing
                               ? "the bundled catalog is missing; install Zorvane again"
                               : name + " is invalid: " + escaped(error.reason()));
    } catch (const std::system_error& error) {
        throw CommandError(ExitStatus::catalogUnusable,
                           name + " cannot be read: " +
                               (error.code() == std::errc::invalid_argument
                                    ? "it is no regular file"
                                    : error.code().message()));
    } catch (const nlohmann::json::exception& error) {
        throw CommandError(ExitStatus::catalogUnusable,
                           name + " is invalid: " + escaped(withoutCode(error.what())));
    }
}

HomeEnvironment openHome(const std::optional<std::string>& home)
{
    try {
        return HomeEnvironment::make(home);
    } catch (const CleanCore::HomeError& error) {
        throw CommandError(ExitStatus::wrongUsage, escaped(error.what()));
    }
}

void requireHarmless(const RulesCatalog& catalog, const CommonOptions& options,
                     const HomeEnvironment& environment)
{
    if (!options.catalog || environment.isConfined) {
        return;
    }
    const auto base = CleanCore::refusedBase(catalog, environment.home, *environment.fileManager);
    if (base) {
        throw CommandError(ExitStatus::catalogUnusable, "the catalog " + escaped(*options.catalog) +
                                                            " is refused: it would clean " +
                                                            escaped(*base) +
                                                            ", which holds more than leftovers");
    }
}

Workspace openWorkspace(const CommonOptions& options)
{
    // The home comes first: from here on the process's environment is the one that will be used.
    HomeEnvironment environment = openHome(options.home);
    CleanCore::ToolLocations tools = toolsFor(options, environment);
    const CleanCore::Timestamp now = timeOf(options, environment);
    RulesCatalog catalog = loadCatalog(options.catalog);
    requireHarmless(catalog, options, environment);
    std::vector<CleaningRule> named = rulesNamed(options.ruleIds, catalog.rules);
    return {std::move(environment), std::move(tools), std::move(catalog.rules),
            std::move(named),       loadTexts(),      now};
}

CleanCore::TextTable loadTexts()
{
    // The order of setlocale(3).
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const language = std::getenv(name);
        if (language != nullptr && *language != '\0') {
            return CleanCore::TextTable::loadBundled(language);
        }
    }
    return CleanCore::TextTable::loadBundled("en");
}

} // namespace ZorvaneCLI
