#include "ZorvaneCLI/Workspace.h"

#include "CleanCore/Startup/Startup.h"
#include "CleanCore/Support/TextEquality.h"
#include "ZorvaneCLI/ExitStatus.h"
#include "ZorvaneCLI/Output/TerminalText.h"
#include "ZorvaneCLI/Output/TimeText.h"

#include <algorithm>
#include <cstdlib>

namespace ZorvaneCLI {

using CleanCore::CleaningRule;
using CleanCore::HomeEnvironment;

namespace Startup = CleanCore::Startup;

namespace {

CleanCore::Timestamp timeOf(const CommonOptions& options, const HomeEnvironment& environment)
{
    if (!options.now) {
        return std::chrono::system_clock::now();
    }
    Startup::requireOtherHome(environment, "--now");
    const auto time = parseTime(*options.now);
    if (!time) {
        throw CommandError(ExitStatus::wrongUsage,
                           "--now takes a time from 1678 to 2261, such as 2026-01-31T08:00:00Z, "
                           "not \"" +
                               *options.now + "\"");
    }
    return *time;
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
            throw CommandError(ExitStatus::wrongUsage,
                               "there is no area \"" + id +
                                   "\"; run \"zorvane-cli rules\" for a list");
        }
    }
    std::vector<CleaningRule> named;
    std::copy_if(rules.begin(), rules.end(), std::back_inserter(named),
                 [&](const CleaningRule& rule) { return ids.empty() || isNamed(rule); });
    return named;
}

} // namespace

Workspace openWorkspace(const CommonOptions& options)
{
    // The home comes first, because opening it may change the environment of the process.
    HomeEnvironment environment = Startup::openHome(options.home);
    CleanCore::ToolLocations tools = Startup::openTools(options.tools, environment);
    const CleanCore::Timestamp now = timeOf(options, environment);
    CleanCore::RulesCatalog catalog = Startup::openCatalog(options.catalog);
    Startup::requireHarmless(catalog, options.catalog, environment);
    std::vector<CleaningRule> named = rulesNamed(options.ruleIds, catalog.rules);
    return {std::move(environment), std::move(tools), std::move(catalog.rules),
            std::move(named),       loadTexts(),      now};
}

CleanCore::TextTable loadTexts()
{
    // In the order of setlocale(3).
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const language = std::getenv(name);
        if (language != nullptr && *language != '\0') {
            return CleanCore::TextTable::loadBundled(language);
        }
    }
    return CleanCore::TextTable::loadBundled("en");
}

} // namespace ZorvaneCLI
