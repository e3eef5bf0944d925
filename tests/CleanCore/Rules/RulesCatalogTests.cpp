#include "CleanCore/Rules/RulesCatalog.h"

#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/TextTable.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace CleanCoreTests {

using namespace CleanCore;
using Json = nlohmann::ordered_json;

namespace {

/// A document with rules of these ids and exclusions.
Json document(const std::vector<std::pair<std::string, std::vector<std::string>>>& rules)
{
    Json all = Json::array();
    for (const auto& [id, exclusions] : rules) {
        all.push_back({{"id", id},
                       {"tier", "A"},
                       {"kind", "fileSystem"},
                       {"titleKey", "title"},
                       {"basePaths", {"~/one", "~/two", "~/two", ""}},
                       {"minAgeDays", 7},
                       {"exclusions", exclusions}});
    }
    return {{"schemaVersion", -99}, {"rules", all}};
}

/// How loading ends: "ok", "malformed" or what is invalid about it.
std::string loaded(const std::string& text)
{
    try {
        static_cast<void>(RulesCatalog::load(text));
        return "ok";
    } catch (const CleanCoreError& error) {
        return error.reason();
    } catch (const nlohmann::json::exception&) {
        return "malformed";
    }
}

} // namespace

TEST(RulesCatalog, ReturnsADocumentExactlyAsItIsWritten)
{
    Json written = document({{"first", {"a", "a", "..", "", "a\\b"}}, {"second", {}}});
    written["rules"][0]["minAgeDays"] = INT64_MAX;
    written["rules"][1].update({{"tier", "B"}, {"kind", "command"}, {"minAgeDays", INT64_MIN}});
    Json withMore = written;
    withMore["unknown"] = {1, 2};
    withMore["rules"][0]["comment"] = nullptr;
    EXPECT_EQ(Json(RulesCatalog::load(withMore.dump())).dump(), written.dump());
}

TEST(RulesCatalog, RefusesEveryMissingMistypedOrMisspeltMember)
{
    using Values = std::vector<std::string>;
    const Values wrongForAll = {"null", "true", "{}", "1.5", "[[]]", "[1]", R"({"a": "b"})"};
    const Values wrongTexts = {"7", R"(["A"])"};
    const Values wrongNumbers = {"7.0", "1e3", R"("7")", "9223372036854775808", "1e400"};
    const Values wrongLists = {R"("7")", "7", R"([null])", R"(["a", 1])"};
    const std::map<std::string, Values> wrong = {
        {"/schemaVersion", wrongNumbers},
        {"/rules", {R"("7")", R"(["no rule"])", R"({"a": {}})"}},
        {"/rules/0/id", wrongTexts},
        {"/rules/0/tier", {"7", R"("safe")", R"("a")", R"("")"}},
        {"/rules/0/kind", {"7", R"("filesystem")", R"("command ")"}},
        {"/rules/0/titleKey", wrongTexts},
        {"/rules/0/basePaths", wrongLists},
        {"/rules/0/minAgeDays", wrongNumbers},
        {"/rules/0/exclusions", wrongLists},
    };
    const Json valid = document({{"a", {"x"}}});
    for (const auto& [member, values] : wrong) {
        const Json::json_pointer pointer(member);
        Json changed = valid;
        changed[pointer.parent_pointer()].erase(pointer.back());
        EXPECT_EQ(loaded(changed.dump()), "malformed") << "without " << member;
        for (const Values& list : {wrongForAll, values}) {
            for (const std::string& value : list) {
                changed[pointer] = "PLACE";
                std::string text = changed.dump();
                text.replace(text.find("\"PLACE\""), 7, value);
                EXPECT_EQ(loaded(text), "malformed") << text;
            }
        }
    }
    const std::string text = valid.dump();
    for (const std::string& broken :
         {std::string(), text + 'x', "// comment\n" + text, text.substr(0, text.size() - 1),
          std::string(text).replace(text.find("title\""), 1, "\xC3")}) {
        EXPECT_EQ(loaded(broken), "malformed") << broken;
    }
}

TEST(RulesCatalog, RefusesIdsThatAreTheSameTextAndSlashesInExclusions)
{
    const std::tuple<Json, const char*> rows[] = {
        {document({{"cache", {}}, {"between", {}}, {"cache", {}}}), "duplicate rule ids"},
        {document({{"caf\u00E9", {}}, {"cafe\u0301", {}}}), "duplicate rule ids"},
        {document({{"cache", {}}, {"Cache", {}}, {"cache ", {}}, {"\uFB01", {}}, {"fi", {}}}),
         "ok"},
        {document({{"a", {"x", "a/b"}}, {"b", {"/"}}}), "exclusion with '/' in rule a"},
        {document({{"same", {"a/b"}}, {"same", {}}}), "duplicate rule ids"},
    };
    for (const auto& [catalog, result] : rows) {
        EXPECT_EQ(loaded(catalog.dump()), result) << catalog;
    }
}

TEST(TextTable, FallsBackToEnglishAndThenToTheKey)
{
    const std::string english = TextTable::loadBundled("en").ruleTitle("trash-user");
    EXPECT_NE(english, "trash-user");
    for (const char* const language : {"en_GB.UTF-8", "C", "", "xx_YY@euro", "/"}) {
        const TextTable texts = TextTable::loadBundled(language);
        EXPECT_EQ(texts.ruleTitle("trash-user"), english) << language;
        EXPECT_EQ(texts.ruleTitle("abc") + texts.text("key") + texts.textOrEmpty("key"), "abckey");
    }
}

} // namespace CleanCoreTests
