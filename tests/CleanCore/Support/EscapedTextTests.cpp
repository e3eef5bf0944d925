#include "CleanCore/Support/EscapedText.h"

#include <gtest/gtest.h>

using CleanCore::escaped;

TEST(EscapedText, NamesEverythingThatReordersHidesOrDrives)
{
    const struct
    {
        std::string_view bytes;
        const char* backslashes;
        const char* brackets;
    } cases[] = {
        {"<b>\\n</b> \u00E9", "<b>\\n</b> \u00E9", "<b>\\n</b> \u00E9"},
        {"\n\r\t\x1B", "\\n\\r\\t\\e", "⟨U+000A⟩⟨U+000D⟩⟨U+0009⟩⟨U+001B⟩"},
        {std::string_view("\0\x7F", 2), "\\u{0000}\\u{007F}", "⟨U+0000⟩⟨U+007F⟩"},
        {"\xC2\x9B", "\\u{009B}", "⟨U+009B⟩"},
        {"\u202E\u2066", "\\u{202E}\\u{2066}", "⟨U+202E⟩⟨U+2066⟩"},
        {"\u2028\u2029", "\\u{2028}\\u{2029}", "⟨U+2028⟩⟨U+2029⟩"},
        {"\u00AD\u200B\uFEFF", "\\u{00AD}\\u{200B}\\u{FEFF}", "⟨U+00AD⟩⟨U+200B⟩⟨U+FEFF⟩"},
        {"\u3164\u034F\U000E0041", "\\u{3164}\\u{034F}\\u{E0041}", "⟨U+3164⟩⟨U+034F⟩⟨U+E0041⟩"},
        {"\uE000\uFFFE", "\\u{E000}\\u{FFFE}", "⟨U+E000⟩⟨U+FFFE⟩"},
        // A surrogate, an overlong form and a character that is cut off are not UTF-8.
        {"\xED\xA0\x80", "\\xED\\xA0\\x80", "\uFFFD\uFFFD\uFFFD"},
        {"\xC0\xAF\xE2\x80", "\\xC0\\xAF\\xE2\\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\u200C\u200D\uFE0F\u180B\U000E0100", "\u200C\u200D\uFE0F\u180B\U000E0100",
         "\u200C\u200D\uFE0F\u180B\U000E0100"},
    };
    for (const auto& [bytes, backslashes, brackets] : cases) {
        EXPECT_EQ(escaped(bytes), backslashes);
        EXPECT_EQ(escaped(bytes, CleanCore::EscapeNotation::brackets), brackets);
    }
}
