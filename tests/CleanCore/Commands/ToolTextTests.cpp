#include "CleanCore/Commands/Parsing/ToolText.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <regex>

namespace CleanCoreTests {

using namespace CleanCore;

/// What parseSize has to find, written for clarity; for short ASCII texts.
static std::int64_t sizeByRegularExpression(const std::string& text)
{
    static const std::regex pattern(R"(([0-9]+(?:[.,][0-9]+)?)\s*([KMGT]?)(I?)B)",
                                    std::regex::ECMAScript | std::regex::icase);
    std::smatch match;
    if (!std::regex_search(text, match, pattern)) {
        return 0;
    }
    std::string number = match[1];
    std::replace(number.begin(), number.end(), ',', '.');
    const std::string prefix = match[2];
    const auto exponent = prefix.empty() ? 0 : std::string("kmgt").find(prefix[0] | 0x20) + 1;
    return static_cast<std::int64_t>(std::stod(number) *
                                     std::pow(match[3].length() != 0 ? 1024 : 1000, exponent));
}

TEST(ToolText, ReadsTheFirstByteCountOfAnyTextInOnePass)
{
    // A matcher that began anew at every digit or space would take hours.
    constexpr std::size_t length = 4'000'000;
    const std::pair<std::string, std::int64_t> rows[] = {
        {"865.2\u00a0MB", 865'200'000},
        {"1\v\u2009\u3000\r\fB", 1},
        {"1\u200bB", 0},
        {"\xff\xfe 8kB \xc2", 8'000},
        {"9223372036854775808B", INT64_MAX},
        {std::string(400, '9') + "B", INT64_MAX},
        {"000." + std::string(400, '0') + "1TB", 0},
        {"9007199254740992B", 9'007'199'254'740'992},
        {std::string(length, '1'), 0},
        {"1" + std::string(length, ' ') + "kB", 1'000},
        {std::string(length, '1') + " kB", INT64_MAX},
    };
    for (const auto& [text, bytes] : rows) {
        EXPECT_EQ(ToolText::parseSize(text), bytes) << text.substr(0, 50);
    }
    const std::string alphabet = "0123459..,,  \tkKmMgGtTiIbBx(";
    std::mt19937 random(20240607);
    for (int round = 0; round < 30'000; ++round) {
        std::string text(random() % 15, ' ');
        std::generate(text.begin(), text.end(),
                      [&] { return alphabet[random() % alphabet.size()]; });
        ASSERT_EQ(ToolText::parseSize(text), sizeByRegularExpression(text)) << '"' << text << '"';
    }
}

} // namespace CleanCoreTests
