#include "CleanCore/Rules/RulesCatalog.h"

#include "CleanCore/Rules/CleanCoreError.h"
#include "tests/Support/TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <system_error>

namespace {

using namespace CleanCore;
using Json = nlohmann::ordered_json;

Json rule(const std::string& id)
{
    return {{"id", id},
            {"tier", "A"},
            {"kind", "fileSystem"},
            {"titleKey", "title"},
            {"basePaths", {"~/one", "~/two"}},
            {"minAgeDays", 7},
            {"exclusions", {".keep", "*"}}};
}

std::string document(const std::vector<Json>& rules)
{
    return Json{{"schemaVersion", 1}, {"rules", rules}}.dump();
}

/// What loading says is invalid; empty if the catalog is valid.
std::string invalidReason(const std::vector<Json>& rules)
{
    try {
        static_cast<void>(RulesCatalog::load(document(rules)));
    } catch (const CleanCoreError& error) {
        EXPECT_EQ(error, CleanCoreError::rulesCatalogInvalid(error.reason()));
        return error.reason();
    }
    return {};
}

Json ruleExcluding(const std::string& id, const std::vector<std::string>& exclusions)
{
    Json json = rule(id);
    json["exclusions"] = exclusions;
    return json;
}

TEST(RulesCatalog, ReturnsADocumentExactlyAsItIsWritten)
{
    Json second = rule("second");
    second["tier"] = "B";
    second["kind"] = "command";
    second["basePaths"] = Json::array();
    second["minAgeDays"] = INT64_MIN;
    Json third = rule("third");
    third["basePaths"] = {"~/x", "~/x", ""};
    third["minAgeDays"] = INT64_MAX;
    third["exclusions"] = {"a", "a"};

    for (const int version : {0, 1, 99, -1}) {
        const Json written{{"schemaVersion", version}, {"rules", {rule("first"), second, third}}};
        Json withMore = written;
        withMore["unknown"] = {1, 2};
        withMore["rules"][0]["comment"] = nullptr;
        const Json readBack = RulesCatalog::load(withMore.dump());
        EXPECT_EQ(readBack.dump(), written.dump());
    }
}

TEST(RulesCatalog, RefusesADocumentWithAMissingOrMistypedMember)
{
    const char* const wrongTypes[] = {"null",
                                      "true",
                                      "{}",
                                      "1.5",
                                      "7.0",
                                      "1e3",
                                      R"([1])",
                                      R"("7")",
                                      "[[]]",
                                      R"({"a": "b"})",
                                      "9223372036854775808",
                                      "-9223372036854775809",
                                      "1e400"};
    // What would be right for the member and must therefore not count as a fault.
    const auto isRight = [](const std::string& key, const Json& value) {
        const bool isList = key == "basePaths" || key == "exclusions";
        return value.is_string() && !isList && key != "minAgeDays" && key != "schemaVersion" &&
               key != "tier" && key != "kind" && key != "rules";
    };
    const Json valid{{"schemaVersion", 1}, {"rules", {rule("a")}}};
    const auto expectRefused = [](const std::string& text) {
        EXPECT_THROW(static_cast<void>(RulesCatalog::load(text)), nlohmann::json::exception)
            << text;
    };
    const auto tryKey = [&](const std::string& key, const Json::json_pointer& parent) {
        Json without = valid;
        without[parent].erase(key);
        expectRefused(without.dump());
        for (const char* const wrong : wrongTypes) {
            Json marked = valid;
            marked[parent][key] = "PLACE";
            std::string text = marked.dump();
            text.replace(text.find("\"PLACE\""), 7, wrong);
            if (!Json::accept(wrong) || !isRight(key, Json::parse(wrong))) {
                expectRefused(text);
            }
        }
    };
    for (const auto& [key, value] : {std::pair("tier", "safe"),
                                     {"tier", "a"},
                                     {"tier", ""},
                                     {"kind", "filesystem"},
                                     {"kind", "Command "}}) {
        Json misspelt = valid;
        misspelt["rules"][0][key] = value;
        expectRefused(misspelt.dump());
    }
    for (const auto& [key, value] : valid.items()) {
        tryKey(key, Json::json_pointer());
    }
    for (const auto& [key, value] : valid["rules"][0].items()) {
        tryKey(key, Json::json_pointer("/rules/0"));
    }
}

TEST(RulesCatalog, RefusesTextThatIsNoCatalog)
{
    const std::string valid = document({rule("a")});
    for (std::size_t length = 0; length < valid.size(); ++length) {
        EXPECT_THROW(static_cast<void>(RulesCatalog::load(valid.substr(0, length))),
                     nlohmann::json::exception)
            << length;
    }
    for (const std::string& text :
         {std::string("[]"), std::string("null"), std::string("\"rules\""), valid + "x",
          valid + valid, "// comment\n" + valid, std::string("\xFF\xFE"),
          document({Json("no rule")}), document({Json::array()})}) {
        EXPECT_THROW(static_cast<void>(RulesCatalog::load(text)), nlohmann::json::exception)
            << text;
    }
    std::string brokenText = valid;
    brokenText.replace(brokenText.find("title\""), 5, "\xC3(\xFF..");
    EXPECT_THROW(static_cast<void>(RulesCatalog::load(brokenText)), nlohmann::json::exception);
}

TEST(RulesCatalog, ComparesIdsAsTextWithoutTrimmingOrFolding)
{
    const struct
    {
        const char* first;
        const char* second;
        bool areDuplicates;
    } cases[] = {
        {"cache", "cache", true}, {"cache", "Cache", false},         {"cache", "cache ", false},
        {"", "", true},           {"caf\u00E9", "cafe\u0301", true}, {"\u212B", "\u00C5", true},
        {"\uFB01", "fi", false}};
    for (const auto& [first, second, areDuplicates] : cases) {
        EXPECT_EQ(invalidReason({rule(first), rule("between"), rule(second)}),
                  areDuplicates ? "duplicate rule ids" : "")
            << first << " and " << second;
    }
}

TEST(RulesCatalog, NamesTheFirstRuleWithASlashInAnExclusion)
{
    EXPECT_EQ(invalidReason({rule("good"), ruleExcluding("one", {"fine", "a/b", "/"}),
                             ruleExcluding("two", {"c/d"})}),
              "exclusion with '/' in rule one");
    EXPECT_EQ(invalidReason({ruleExcluding("same", {"a/b"}), rule("same")}), "duplicate rule ids");
    EXPECT_EQ(invalidReason({ruleExcluding("odd", {"*", ".hidden", "..", "", "a\\b"})}), "");
}

TEST(RulesCatalog, PassesOnThePlatformsErrorForAFileThatCannotBeRead)
{
    const CleanCoreTests::TemporaryFolder folder;
    folder.makeFile("sealed.json", document({}));
    folder.setMode("sealed.json", 0);
    const struct
    {
        std::string path;
        int error;
    } cases[] = {{folder.path("missing.json"), ENOENT},
                 {folder.path(), EISDIR},
                 {folder.path("sealed.json"), EACCES}};
    for (const auto& [path, error] : cases) {
        try {
            static_cast<void>(RulesCatalog::loadFile(path));
            ADD_FAILURE() << path;
        } catch (const std::system_error& thrown) {
            EXPECT_EQ(thrown.code().value(), error);
            EXPECT_NE(std::string(thrown.what()).find(path), std::string::npos);
        }
    }
}

TEST(RulesCatalog, BundlesTheRulesThatTheCommandEnginesKnow)
{
    const RulesCatalog catalog = RulesCatalog::loadBundled();
    for (const char* const id : {"tm-local-snapshots", "dev-unavailable-simulators",
                                 "docker-reclaimable", "brew-cleanup"}) {
        const auto rule = std::find_if(catalog.rules.begin(), catalog.rules.end(),
                                       [&](const auto& each) { return each.id == id; });
        EXPECT_TRUE(rule != catalog.rules.end() && rule->kind == RuleKind::command) << id;
    }
}

} // namespace
