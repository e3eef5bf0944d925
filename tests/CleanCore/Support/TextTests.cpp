#include "CleanCore/Support/ByteCount.h"
#include "CleanCore/Support/EscapedText.h"
#include "CleanCore/Support/TextEquality.h"

#include <gtest/gtest.h>

namespace CleanCoreTests {

using namespace CleanCore;
using namespace std::string_view_literals;

TEST(ByteCount, IsRoundedToWhatEachUnitShows)
{
    const std::pair<std::int64_t, const char*> rows[] = {
        {0, "Zero KB"},          {1, "1 byte"},
        {999, "999 bytes"},      {1'499, "1 KB"},
        {1'500, "2 KB"},         {999'500, "1 MB"},
        {1'049'999, "1 MB"},     {1'050'000, "1.1 MB"},
        {999'950'000, "1 GB"},   {1'005'000'000, "1.01 GB"},
        {INT64_MAX, "9.22 EB"},  {-1, "-1 byte"},
        {INT64_MIN, "-9.22 EB"},
    };
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(formatByteCount(bytes), text) << bytes;
    }
    EXPECT_EQ(formatByteCount(-12'340'000'000, "\u066B"), "-12\u066B34 GB");
}

TEST(TextEquality, HoldsForCanonicallyEquivalentTextsOnly)
{
    const std::tuple<std::string_view, std::string_view, bool> rows[] = {
        {"Cache", "cache", false},
        {"\u00E9", "e\u0301", true},
        {"q\u0307\u0323", "q\u0323\u0307", true},
        {"\uFB01", "fi", false},
        {"\u00E9\0b"sv, "e\u0301\0b"sv, true},
        {"\u00E9\0b"sv, "e\u0301\0c"sv, false},
        {"\xFF\u00E9", "\xFF\x65\u0301", false},
        {"\xC3", "\xC4", false},
    };
    for (const auto& [a, b, isEqual] : rows) {
        EXPECT_EQ(areEquivalent(a, b), isEqual) << a << " and " << b;
        EXPECT_EQ(canonicalForm(a) == canonicalForm(b), isEqual) << a << " and " << b;
    }
}

TEST(EscapedText, NamesEverythingThatReordersHidesOrDrives)
{
    const std::tuple<std::string_view, const char*, const char*> rows[] = {
        {"<b>\\n</b> \u00E9", "<b>\\n</b> \u00E9", "<b>\\n</b> \u00E9"},
        {"\n\r\t\x1B", "\\n\\r\\t\\e", "⟨U+000A⟩⟨U+000D⟩⟨U+0009⟩⟨U+001B⟩"},
        {"\0\x7F\xC2\x9B"sv, "\\u{0000}\\u{007F}\\u{009B}", "⟨U+0000⟩⟨U+007F⟩⟨U+009B⟩"},
        {"\u202E\u2066\u2028", "\\u{202E}\\u{2066}\\u{2028}", "⟨U+202E⟩⟨U+2066⟩⟨U+2028⟩"},
        {"\u00AD\u200B\uFEFF", "\\u{00AD}\\u{200B}\\u{FEFF}", "⟨U+00AD⟩⟨U+200B⟩⟨U+FEFF⟩"},
        {"\u3164\u034F\U000E0041", "\\u{3164}\\u{034F}\\u{E0041}", "⟨U+3164⟩⟨U+034F⟩⟨U+E0041⟩"},
        // A surrogate, an overlong form and a character that is cut off are not UTF-8.
        {"\xED\xA0\x80", "\\xED\\xA0\\x80", "\uFFFD\uFFFD\uFFFD"},
        {"\xC0\xAF\xE2\x80", "\\xC0\\xAF\\xE2\\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\u200C\uFE0F\U000E0100", "\u200C\uFE0F\U000E0100", "\u200C\uFE0F\U000E0100"},
    };
    for (const auto& [bytes, backslashes, brackets] : rows) {
        EXPECT_EQ(escaped(bytes), backslashes);
        EXPECT_EQ(escaped(bytes, EscapeNotation::brackets), brackets);
    }
}

} // namespace CleanCoreTests
