#include "CleanCore/Rules/RulesCatalog.h"

#include "CleanCore/Rules/CleanCoreError.h"
#include "CleanCore/Rules/TextTable.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace CleanCoreTests {

using namespace CleanCore;
using Json = nlohmann::ordered_json;

namespace {

Json rule(const std::string& id, const std::vector<std::string>& exclusions = {".keep", "*"})
{
    return {{"id", id},
            {"tier", "A"},
            {"kind", "fileSystem"},
            {"titleKey", "title"},
            {"basePaths", {"~/one", "~/two"}},
            {"minAgeDays", 7},
            {"exclusions", exclusions}};
}

Json document(const std::vector<Json>& rules)
{
    return {{"schemaVersion", 1}, {"rules", rules}};
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
    Json second = rule("second", {"a", "a", "..", "", "a\\b"});
    second.update({{"tier", "B"}, {"kind", "command"}, {"basePaths", Json::array()}});
    second["minAgeDays"] = INT64_MIN;
    Json third = rule("third");
    third.update({{"basePaths", {"~/x", "~/x", ""}}, {"minAgeDays", INT64_MAX}});
    Json written = document({rule("first"), second, third});
    written["schemaVersion"] = -99;
    Json withMore = written;
    withMore["unknown"] = {1, 2};
    withMore["rules"][0]["comment"] = nullptr;
    EXPECT_EQ(Json(RulesCatalog::load(withMore.dump())).dump(), written.dump());
}

TEST(RulesCatalog, RefusesEveryMissingMistypedOrMisspeltMember)
{
    const std::string wrongForAll[] = {"null", "true", "{}", "1.5", "[[]]", "[1]", R"({"a": "b"})"};
    const std::vector<std::string> wrongTexts = {"7", R"(["A"])"};
    const std::vector<std::string> wrongNumbers = {
        "7.0", "1e3", R"("7")", "9223372036854775808", "-9223372036854775809", "1e400"};
    const std::vector<std::string> wrongLists = {R"("7")", "7", R"([null])", R"(["a", 1])"};
    const std::map<std::string, std::vector<std::string>> wrong = {
        {"/schemaVersion", wrongNumbers},
        {"/rules", {R"("7")", "7", "[[]]", R"(["no rule"])", R"({"a": {}})"}},
        {"/rules/0/id", wrongTexts},
        {"/rules/0/tier", {"7", R"("safe")", R"("a")", R"("")"}},
        {"/rules/0/kind", {"7", R"("filesystem")", R"("command ")"}},
        {"/rules/0/titleKey", wrongTexts},
        {"/rules/0/basePaths", wrongLists},
        {"/rules/0/minAgeDays", wrongNumbers},
        {"/rules/0/exclusions", wrongLists},
    };
    const Json valid = document({rule("a")});
    ASSERT_EQ(wrong.size(), valid.size() + valid["rules"][0].size());
    for (const auto& [member, values] : wrong) {
        const Json::json_pointer pointer(member);
        Json without = valid;
        without[pointer.parent_pointer()].erase(pointer.back());
        EXPECT_EQ(loaded(without.dump()), "malformed") << "without " << member;
        std::vector<std::string> all(std::begin(wrongForAll), std::end(wrongForAll));
        all.insert(all.end(), values.begin(), values.end());
        for (const std::string& value : all) {
            Json marked = valid;
            marked[pointer] = "PLACE";
            std::string text = marked.dump();
            text.replace(text.find("\"PLACE\""), 7, value);
            EXPECT_EQ(loaded(text), "malformed") << text;
        }
    }
    const std::string text = valid.dump();
    for (const std::string& broken : {std::string(), std::string("[]"), text + 'x', text + text,
                                      "// comment\n" + text, text.substr(0, text.size() - 1),
                                      std::string(text).replace(text.find("title\""), 1, "\xC3")}) {
        EXPECT_EQ(loaded(broken), "malformed") << broken;
    }
}

TEST(RulesCatalog, RefusesIdsThatAreTheSameTextAndSlashesInExclusions)
{
    const std::tuple<Json, Json, const char*> rows[] = {
        {rule("cache"), rule("cache"), "duplicate rule ids"},
        {rule("cache"), rule("Cache"), "ok"},
        {rule("cache"), rule("cache "), "ok"},
        {rule(""), rule(""), "duplicate rule ids"},
        {rule("caf\u00E9"), rule("cafe\u0301"), "duplicate rule ids"},
        {rule("\uFB01"), rule("fi"), "ok"},
        {rule("one", {"fine", "a/b"}), rule("two", {"/"}), "exclusion with '/' in rule one"},
        {rule("one"), rule("two", {"c/d"}), "exclusion with '/' in rule two"},
        {rule("same", {"a/b"}), rule("same"), "duplicate rule ids"},
    };
    for (const auto& [first, last, result] : rows) {
        EXPECT_EQ(loaded(document({first, rule("between"), last}).dump()), result)
            << first["id"] << " and " << last["id"];
    }
}

TEST(TextTable, FallsBackToEnglishAndThenToTheKey)
{
    const std::string english = TextTable::loadBundled("en").ruleTitle("trash-user");
    EXPECT_NE(english, "trash-user");
    for (const char* const language : {"en_GB.UTF-8", "C", "", "xx_YY@euro", "../texts/en", "/"}) {
        const TextTable texts = TextTable::loadBundled(language);
        EXPECT_EQ(texts.ruleTitle("trash-user"), english) << language;
        EXPECT_EQ(texts.ruleTitle("abc"), "abc");
        EXPECT_EQ(texts.text("category.explanation.abc"), "category.explanation.abc");
        EXPECT_EQ(texts.textOrEmpty("category.explanation.abc"), "");
    }
}

} // namespace CleanCoreTests
