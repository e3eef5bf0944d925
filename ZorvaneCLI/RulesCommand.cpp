#include "CleanCore/Startup/Startup.h"
#include "Words/StartErrorText.h"
#include "ZorvaneCLI/Commands.h"
#include "ZorvaneCLI/Output/ColumnTable.h"
#include "ZorvaneCLI/Output/TerminalText.h"
#include "ZorvaneCLI/Workspace.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>

namespace ZorvaneCLI {

using CleanCore::CleaningRule;

namespace Startup = CleanCore::Startup;

namespace {

void printJson(const CleanCore::RulesCatalog& catalog, const CleanCore::TextTable& texts)
{
    nlohmann::ordered_json document = catalog;
    for (auto& rule : document["rules"]) {
        const auto id = rule["id"].get<std::string>();
        rule["title"] = texts.ruleTitle(id);
        rule["explanation"] = texts.textOrEmpty("category.explanation." + id);
        rule["warning"] = texts.textOrEmpty("category.warning." + id);
    }
    std::cout << document.dump(2) << '\n';
}

void printTable(const CleanCore::RulesCatalog& catalog, const CleanCore::TextTable& texts)
{
    using enum ColumnTable::Alignment;
    ColumnTable table({left, left, left, right});
    table.add({"AREA", "ID", "", "AGE"});
    for (const CleaningRule& rule : catalog.rules) {
        const bool needsReview = rule.tier == CleanCore::RuleTier::reviewRequired;
        table.add({escaped(texts.ruleTitle(rule.id)), escaped(rule.id),
                   needsReview ? "review required" : "",
                   rule.minAgeDays > 0 ? std::to_string(rule.minAgeDays) + " d" : ""});
    }
    std::cout << table.text() << '\n' << counted(catalog.rules.size(), "area") << '\n';
}

/// Judges a catalog by a home. Listing it needs none, so the account may be without one.
void requireHarmless(const CleanCore::RulesCatalog& catalog, const CommonOptions& options)
{
    std::optional<CleanCore::HomeEnvironment> home;
    try {
        home = Startup::openHome(options.home);
    } catch (const CleanCore::StartError& error) {
        if (options.home) {
            throw;
        }
        Words::printError("zorvane-cli", "the catalog was not checked for what it would clean: " +
                                             Words::startErrorText(error));
        return;
    }
    Startup::requireHarmless(catalog, options.catalog, *home);
}

} // namespace

ExitStatus listRules(const CommonOptions& options)
{
    const CleanCore::RulesCatalog catalog = Startup::openCatalog(options.catalog);
    if (options.catalog) {
        requireHarmless(catalog, options);
    }
    const CleanCore::TextTable texts = loadTexts();
    options.json ? printJson(catalog, texts) : printTable(catalog, texts);
    return ExitStatus::done;
}

} // namespace ZorvaneCLI
