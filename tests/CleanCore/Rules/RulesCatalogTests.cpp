#include "CleanCore/Rules/RulesCatalog.h"

#include "CleanCore/Rules/CleanCoreError.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace CleanCoreTests {

using namespace CleanCore;
using Json = nlohmann::ordered_json;

namespace {

const char* const document = R"({"schemaVersion": -99, "rules": [
    {"id": "a", "tier": "A", "kind": "fileSystem", "titleKey": "title", "basePaths": ["~/b", "~/a"],
     "minAgeDays": 9223372036854775807, "exclusions": ["a", "a", "..", "", "a\\b"]},
    {"id": "b", "tier": "B", "kind": "command", "titleKey": "", "basePaths": ["", "~/a", "~/a"],
     "minAgeDays": -9223372036854775808, "exclusions": []}]})";

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
    Json withMore = Json::parse(document);
    withMore["unknown"] = {1, 2};
    withMore["rules"][0]["comment"] = nullptr;
    EXPECT_EQ(Json(RulesCatalog::load(withMore.dump())).dump(), Json::parse(document).dump());
}

TEST(RulesCatalog, RefusesEveryMissingMistypedOrMisspeltMember)
{
    // A member, and values that it may not have beside those that none may have.
    const std::string wrongForAll = R"( null true {} 1.5 [[]] [1] {"a":"b"})";
    for (const std::vector<std::string>& row : table(R"(
/schemaVersion | 7.0 1e3 "7" 9223372036854775808
/rules | "7" 7 ["none"] {"a":{}}
/rules/0/id | 7 ["A"]
/rules/0/tier | 7 "safe" "a" ""
/rules/0/kind | 7 "filesystem" "commands"
/rules/0/titleKey | 7 ["A"]
/rules/0/basePaths | "7" 7 [null] ["a",1]
/rules/0/minAgeDays | 7.0 1e3 "7" 9223372036854775808
/rules/0/exclusions | "7" 7 [null] ["a",1]
)")) {
        const Json::json_pointer pointer(row[0]);
        Json changed = Json::parse(document);
        changed[pointer.parent_pointer()].erase(pointer.back());
        EXPECT_EQ(loaded(changed.dump()), "malformed") << "without " << row[0];
        for (const std::string& value : words(row[1] + wrongForAll)) {
            changed[pointer] = Json::parse(value);
            EXPECT_EQ(loaded(changed.dump()), "malformed") << changed;
        }
    }
    const std::string text = document;
    for (const std::string& broken : {text + 'x', "// comment\n" + text, text.substr(1),
                                      std::string(text).replace(text.find("title\""), 1, "\xC3")}) {
        EXPECT_EQ(loaded(broken), "malformed") << broken;
    }
}

TEST(RulesCatalog, RefusesIdsThatAreTheSameTextAndSlashesInExclusions)
{
    // The ids of rules, an exclusion of the last one, and how loading ends.
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"cache between cache", "x", "duplicate rule ids"},
        {"caf\u00E9 cafe\u0301", "x", "duplicate rule ids"},
        {"cache Cache \uFB01 fi", "..", "ok"},
        {"one two", "a/b", "exclusion with '/' in rule two"},
        {"same same", "/", "duplicate rule ids"},
    };
    for (const auto& [ids, exclusion, result] : rows) {
        Json catalog = {{"schemaVersion", 1}, {"rules", Json::array()}};
        for (const std::string& id : words(ids)) {
            catalog["rules"].push_back(Json::parse(document)["rules"][0]);
            catalog["rules"].back()["id"] = id;
        }
        catalog["rules"].back()["exclusions"] = {"fine", exclusion};
        EXPECT_EQ(loaded(catalog.dump()), result) << ids;
    }
}

} // namespace CleanCoreTests
