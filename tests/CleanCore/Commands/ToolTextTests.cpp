#include "CleanCore/Commands/Parsing/ToolText.h"
#include "CleanCore/Scanning/CategoryResult.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <regex>
#include <string>

using CleanCore::ToolText::lines;
using CleanCore::ToolText::parseSize;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

/// What parseSize is specified by, for short ASCII texts.
std::int64_t sizeByRegularExpression(const std::string& text)
{
    static const std::regex pattern(R"(([0-9]+(?:[.,][0-9]+)?)\s*([KMGT]?I?B))",
                                    std::regex::ECMAScript | std::regex::icase);
    std::smatch match;
    if (!std::regex_search(text, match, pattern)) {
        return 0;
    }
    std::string number = match[1];
    std::replace(number.begin(), number.end(), ',', '.');
    std::string unit = match[2];
    for (char& c : unit) {
        c = static_cast<char>(std::toupper(c));
    }
    const double base = unit.find('I') == std::string::npos ? 1000 : 1024;
    const auto exponent = std::string("KMGT").find(unit[0]);
    return static_cast<std::int64_t>(
        std::stod(number) *
        std::pow(base, exponent == std::string::npos ? 0 : static_cast<int>(exponent) + 1));
}

} // namespace

TEST(ToolText, ReadsTheFirstByteCountOfAText)
{
    const std::vector<std::pair<std::string, std::int64_t>> cases = {
        {"2.1GB (45%)", 2'100'000'000},
        {"no digits at all, MB", 0},
        {"1.5 Mio", 0},
        {"7\t \nkib", 7 * 1'024},
        {"865.2\u00a0MB", 865'200'000},
        {"1\v\u2009\u3000\r\fB", 1},
        {"1\u200bB", 0},
        {"3\u202fB", 3},
        {"1tIb", 1'099'511'627'776},
        {"1.9999 B", 1},
        {"6,512 files, 28.4MB", 28'400'000},
        {"pkg-2b.tar.gz (4.5MB)", 2},
        {"\xff\xfe 8kB \xc2", 8'000},
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(parseSize(text), bytes) << '"' << text << '"';
    }
}

TEST(ToolText, AgreesWithTheRegularExpressionOnAnyText)
{
    const std::string alphabet = "0123459..,,  \tkKmMgGtTiIbBx(";
    std::mt19937 random(20240607);
    std::uniform_int_distribution<std::size_t> length(0, 14);
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    for (int round = 0; round < 30'000; ++round) {
        std::string text;
        for (std::size_t left = length(random); left > 0; --left) {
            text += alphabet[letter(random)];
        }
        ASSERT_EQ(parseSize(text), sizeByRegularExpression(text)) << '"' << text << '"';
    }
}

TEST(ToolText, SaturatesWhatDoesNotFit)
{
    const std::string nines(400, '9');
    EXPECT_EQ(parseSize("9223372036854775808B"), largest);
    EXPECT_EQ(parseSize("99999999999TB"), largest);
    EXPECT_EQ(parseSize(nines + "B"), largest);
    EXPECT_EQ(parseSize("000." + std::string(400, '0') + "1TB"), 0);
    EXPECT_EQ(parseSize("9007199254740992B"), 9'007'199'254'740'992);

    CleanCore::CategoryResult result;
    result.items = {{.path = "a", .sizeBytes = largest}, {.path = "b", .sizeBytes = largest}};
    EXPECT_EQ(result.totalBytes(), largest);
}

TEST(ToolText, TakesOnePassOverALineOfMegabytes)
{
    // A matcher that began anew at every digit or space would take hours.
    constexpr std::size_t length = 4'000'000;
    EXPECT_EQ(parseSize(std::string(length, '1')), 0);
    EXPECT_EQ(parseSize("1" + std::string(length, ' ')), 0);
    EXPECT_EQ(parseSize("1" + std::string(length, ' ') + "kB"), 1'000);
    EXPECT_EQ(parseSize(std::string(length, '1') + " kB"), largest);
    std::string pairs;
    while (pairs.size() < length) {
        pairs += "1.";
    }
    EXPECT_EQ(parseSize(pairs + "5kB"), 1'500);
}

TEST(ToolText, SplitsAtEveryLineFeedAndDropsOnlyEmptyLines)
{
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(lines(""), Lines{});
    EXPECT_EQ(lines("\n\n"), Lines{});
    EXPECT_EQ(lines("a"), Lines{"a"});
    EXPECT_EQ(lines(" a \n\n\tb\r\nc\n"), (Lines{" a ", "\tb\r", "c"}));
}
