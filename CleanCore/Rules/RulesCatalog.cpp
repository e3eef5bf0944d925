#include "CleanCore/Rules/RulesCatalog.h"

#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/ResourceBundle.h"
#include "CleanCore/Rules/StrictJson.h"
#include "CleanCore/Support/TextEquality.h"

#include <nlohmann/json.hpp>
#include <set>

namespace CleanCore {

namespace {

RulesCatalog decode(std::string_view bytes)
{
    const auto document = nlohmann::json::parse(bytes);
    RulesCatalog catalog;
    catalog.schemaVersion = StrictJson::integer(document, "schemaVersion");
    const auto& rules = document.at("rules");
    if (!rules.is_array()) {
        throw nlohmann::json::type_error::create(302, "\"rules\" must be an array", &document);
    }
    catalog.rules = rules.get<std::vector<CleaningRule>>();
    return catalog;
}

void validate(const std::vector<CleaningRule>& rules)
{
    std::set<std::string> ids;
    for (const CleaningRule& rule : rules) {
        if (!ids.insert(canonicalForm(rule.id)).second) {
            throw CleanCoreError::rulesCatalogInvalid("duplicate rule ids");
        }
    }
    for (const CleaningRule& rule : rules) {
        for (const std::string& exclusion : rule.exclusions) {
            if (exclusion.find('/') != std::string::npos) {
                throw CleanCoreError::rulesCatalogInvalid("exclusion with '/' in rule " + rule.id);
            }
        }
    }
}

} // namespace

RulesCatalog RulesCatalog::loadBundled()
{
    const std::optional<std::string> path = ResourceBundle::resource("rules", "json");
    if (!path) {
        throw CleanCoreError::rulesCatalogMissing();
    }
    return loadFile(*path);
}

RulesCatalog RulesCatalog::loadFile(const std::string& path)
{
    return load(ResourceBundle::readFile(path));
}

RulesCatalog RulesCatalog::load(std::string_view bytes)
{
    RulesCatalog catalog = decode(bytes);
    validate(catalog.rules);
    return catalog;
}

void to_json(nlohmann::ordered_json& json, const RulesCatalog& catalog)
{
    json =
        nlohmann::ordered_json{{"schemaVersion", catalog.schemaVersion}, {"rules", catalog.rules}};
}

} // namespace CleanCore
