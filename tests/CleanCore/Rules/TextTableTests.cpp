#include "CleanCore/Rules/TextTable.h"

#include <gtest/gtest.h>

namespace {

using CleanCore::TextTable;

TEST(TextTable, FallsBackToTheKeyOrTheIdWhereThereIsNoText)
{
    std::map<std::string, std::string, std::less<>> known;
    known["rule.known.title"] = "Known";
    const TextTable texts(known);
    EXPECT_EQ(texts.ruleTitle("known"), "Known");
    EXPECT_EQ(texts.ruleTitle("abc"), "abc");
    EXPECT_EQ(texts.text("category.explanation.abc"), "category.explanation.abc");
    EXPECT_EQ(texts.textOrEmpty("category.explanation.abc"), "");
}

TEST(TextTable, FillsEveryLanguageWithEnglish)
{
    const std::string english = TextTable::loadBundled("en").ruleTitle("trash-user");
    EXPECT_NE(english, "trash-user");
    for (const char* const language : {"en_GB.UTF-8", "C", "", "xx_YY@euro", "../texts/en", "/"}) {
        EXPECT_EQ(TextTable::loadBundled(language).ruleTitle("trash-user"), english) << language;
    }
}

} // namespace
