#include "CleanCore/Rules/CleaningRule.h"

#include "CleanCore/Rules/StrictJson.h"

#include <nlohmann/json.hpp>

namespace CleanCore {

namespace {

template <typename Value>
struct Spelling
{
    std::string_view text;
    Value value;
};

constexpr Spelling<RuleTier> tiers[] = {{"A", RuleTier::safe}, {"B", RuleTier::reviewRequired}};
constexpr Spelling<RuleKind> kinds[] = {{"fileSystem", RuleKind::fileSystem},
                                        {"command", RuleKind::command}};

template <typename Value, std::size_t count>
Value decode(const Spelling<Value> (&spellings)[count], const nlohmann::json& json, const char* key)
{
    const std::string text = StrictJson::text(json, key);
    for (const auto& spelling : spellings) {
        if (text == spelling.text) {
            return spelling.value;
        }
    }
    throw nlohmann::json::other_error::create(
        501, "unknown value \"" + text + "\" of \"" + key + "\"", &json);
}

template <typename Value, std::size_t count>
std::string_view encode(const Spelling<Value> (&spellings)[count], Value value)
{
    for (const auto& spelling : spellings) {
        if (value == spelling.value) {
            return spelling.text;
        }
    }
    return "";
}

} // namespace

std::string_view name(RuleTier tier)
{
    return encode(tiers, tier);
}

std::string_view name(RuleKind kind)
{
    return encode(kinds, kind);
}

void from_json(const nlohmann::json& json, CleaningRule& rule)
{
    rule.id = StrictJson::text(json, "id");
    rule.tier = decode(tiers, json, "tier");
    rule.kind = decode(kinds, json, "kind");
    rule.titleKey = StrictJson::text(json, "titleKey");
    rule.basePaths = StrictJson::strings(json, "basePaths");
    rule.minAgeDays = StrictJson::integer(json, "minAgeDays");
    rule.exclusions = StrictJson::strings(json, "exclusions");
}

void to_json(nlohmann::ordered_json& json, const CleaningRule& rule)
{
    json = nlohmann::ordered_json{{"id", rule.id},
                                  {"tier", name(rule.tier)},
                                  {"kind", name(rule.kind)},
                                  {"titleKey", rule.titleKey},
                                  {"basePaths", rule.basePaths},
                                  {"minAgeDays", rule.minAgeDays},
                                  {"exclusions", rule.exclusions}};
}

} // namespace CleanCore
